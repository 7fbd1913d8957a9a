#include "HostileSampleTree.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace {

std::string InHex(HRESULT result) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%lx", static_cast<unsigned long>(result));
    return text.data();
}

std::string Show(const ObjectAnswer& answer) {
    constexpr const char* kGiven[] = {"object", "nothing", "wild"};
    return InHex(answer.result) + " " + kGiven[static_cast<std::size_t>(answer.given)];
}

std::string Show(const std::optional<std::wstring>& text) {
    return text ? testing::PrintToString(*text) : "null";
}

std::string Show(const TextAnswer& answer) {
    return InHex(answer.result) + " " + Show(answer.text);
}

std::string Show(const NumberAnswer& answer) {
    return InHex(answer.result) + " " + std::to_string(answer.number);
}

std::string Show(const TimeAnswer& answer) {
    return InHex(answer.result) + " " + (answer.time ? std::to_string(*answer.time) : "untouched");
}

std::string Show(const HostilePair& pair) {
    std::string text = InHex(pair.result) + " " + Show(pair.name) + " = ";
    if (pair.instances) {
        return text + "type " + std::to_string(pair.instancesType) + ", query " + Show(pair.instancesQuery) + " " +
               Describe(*pair.instances);
    }
    return text + (pair.value ? pair.value->Describe() : "untouched");
}

std::string Show(const HostileNode& node) {
    std::string text = "time " + Show(node.time) + "\n  metrics " + Show(node.metricsAnswer) + " " +
                       Describe(node.metrics) + "\n  instances " + Show(node.instancesAnswer);
    for (const HostileChild& child : node.children) {
        text += "\n    " + Show(child.answer) + " " + Show(child.key) + " node " + std::to_string(child.node);
    }
    return text + "\n    end " + InHex(node.childrenEnd);
}

std::string Show(const HostileSession& session) {
    return "key " + std::to_string(session.key) + " " + Show(session.answer) + " id " + Show(session.id) + " sid " +
           Show(session.sid) + " user " + Show(session.user) + " domain " + Show(session.domain) + " state " +
           Show(session.state) + " label " + Show(session.label) + " box " + Show(session.boxAnswer) + " " +
           Describe(session.box);
}

}  // namespace

std::string Describe(const HostileValues& values) {
    std::string text = "{";
    for (const HostilePair& pair : values.pairs) {
        text += Show(pair) + "; ";
    }
    return text + "end " + InHex(values.end) + "}";
}

std::string Describe(const HostileBox& box) {
    return "enumerator " + Show(box.enumeratorAnswer) + " " + Describe(box.properties);
}

std::string Describe(const HostileTree& tree) {
    std::string text;
    for (std::size_t number = 0; number < tree.nodes.size(); ++number) {
        text += "node " + std::to_string(number) + " " + Show(tree.nodes[number]) + "\n";
    }
    for (const HostileSession& session : tree.sessions) {
        text += "session " + Show(session) + "\n";
    }
    return text + "no session " + Show(tree.noSession) + "\nextended " + Describe(tree.extendedMetrics) + "\n";
}
