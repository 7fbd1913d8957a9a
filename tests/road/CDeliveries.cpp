#include "CDeliveries.h"

#include <algorithm>
#include <functional>
#include <sstream>
#include <stdexcept>

#include "RoadItems.h"

namespace {

constexpr std::size_t kBeginning = 40;

std::size_t HashLine(const std::string& line) {
    return std::hash<std::string>{}(line);
}

}  // namespace

void CDeliveries::Add(const std::string& line, HRESULT result) {
    if (line.empty()) {
        return;
    }
    const std::lock_guard<std::mutex> lock(m_lock);
    const bool isNew = m_deliveries.insert({HashLine(line), {result, 0, line.substr(0, kBeginning)}}).second;
    if (!isNew) {
        throw std::logic_error("the same item is sent a second time: " + line);
    }
}

std::vector<std::string> CDeliveries::Compare(const std::string& record) {
    const std::lock_guard<std::mutex> lock(m_lock);
    std::vector<std::string> complaints;
    std::istringstream stream(record);
    for (std::string line; std::getline(stream, line);) {
        const auto found = m_deliveries.find(HashLine(SortMaps(line + "\n")));
        if (found == m_deliveries.end()) {
            complaints.push_back("recorded, but never sent: " + line);
        } else {
            ++found->second.recorded;
        }
    }
    for (const auto& [hash, delivery] : m_deliveries) {
        const bool isRight = delivery.result == S_OK ? delivery.recorded == 1 : delivery.recorded <= 1;
        if (!isRight) {
            complaints.push_back("recorded " + std::to_string(delivery.recorded) + " times, result " +
                                 std::to_string(delivery.result) + ": " + delivery.beginning);
        }
    }
    return complaints;
}

std::string CDeliveries::Summarize() const {
    const std::lock_guard<std::mutex> lock(m_lock);
    long heard = 0;
    long refused = 0;
    long refusedButHeard = 0;
    for (const auto& [hash, delivery] : m_deliveries) {
        heard += delivery.result == S_OK ? 1 : 0;
        refused += delivery.result == S_OK ? 0 : 1;
        refusedButHeard += delivery.result != S_OK && delivery.recorded > 0 ? 1 : 0;
    }
    return std::to_string(heard) + " items heard, " + std::to_string(refused) + " refused, of which " +
           std::to_string(refusedButHeard) + " heard all the same";
}
