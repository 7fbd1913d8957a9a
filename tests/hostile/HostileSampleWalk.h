#pragma once

#include <windows.h>

#include <oleauto.h>

#include <functional>
#include <string>

#include "HostileSampleJava.h"
#include "HostileSampleTree.h"
#include "HostileVariantModel.h"

/// What an enumerator's answer gives as its value.
[[nodiscard]] inline const VARIANT& ValueOf(const HostilePair& pair) {
    static const VARIANT nothing{};
    return pair.value ? pair.value->Get() : nothing;
}

/// The walks through a description, each as the host's documentation has it.
class CSampleModel {
public:
    CSampleModel(const HostileTree& tree, CModelJava& java) : m_tree(tree), m_java(java) {}

    [[nodiscard]] bool Sample(bool hasSessions);
    [[nodiscard]] bool ExtendedSample(bool hasMetrics);
    [[nodiscard]] bool Map(const HostileBox& box);
    [[nodiscard]] bool Metric(const std::wstring& name, const VARIANT& value);

private:
    using VisitPair = std::function<void(const HostilePair&)>;
    using VisitChild = std::function<void(const HostileChild&)>;

    static HRESULT Walk(const HostileValues& values, const VisitPair& visit);
    static void Walk(const HostileNode& node, const VisitChild& visit);

    [[nodiscard]] bool MakeSample();
    [[nodiscard]] bool Text(const std::wstring& text);
    [[nodiscard]] bool SessionText(const TextAnswer& answer);
    [[nodiscard]] bool MakeSession(const HostileSession& session);
    void PutProperties(const HostileSession& session);
    void AddSession(const HostileChild& child);
    void AddApps(const HostileNode& node);
    void AddApp(const HostileNode& node, const HostileChild& child);
    [[nodiscard]] bool AddMetrics(const std::string& owner, const HostileNode& node);
    [[nodiscard]] bool MakeMetric(const std::wstring& name);
    [[nodiscard]] bool SetMetric(const ModelMetricValue& value);
    void PutMetric(const std::string& owner, const std::wstring& name, const HostileNode& node);
    void ExtendedMetric(const HostilePair& pair);
    [[nodiscard]] bool AreInstancesToBeHad(const HostileNode& node);
    [[nodiscard]] const HostileSession* FindSession(const HostileChild& child) const;
    [[nodiscard]] static std::wstring NameOf(const HostileNode& node);

    const HostileTree& m_tree;
    CModelJava& m_java;
};
