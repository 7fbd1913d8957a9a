#pragma once

#include <windows.h>

#include <cwchar>

#include "HostCalls.h"
#include "HostTime.h"
#include "IInstanceEnumerator.h"
#include "INameValueEnumerator.h"
#include "IPropertyBox.h"
#include "ISampleNode.h"
#include "ISessionCollection.h"
#include "IUserSessionInfo.h"
#include "JavaIds.h"

/// Samples and what they consist of, as code written by hand would read them: it asks the host what the library asks
/// it, in the same order, and has `Java` (CPlainJava, CNoJava) make the objects.
template <typename Java>
class CSampleReader {
public:
    CSampleReader(const Java& java, const JavaIds& ids) noexcept : m_java(java), m_ids(ids) {}

    [[nodiscard]] jobject ReadSample(ISampleNode& node, ISessionCollection& sessions) const {
        const jobject sample = MakeSample(node);
        AddMetrics(sample, m_ids.samplePutMetric, node);
        WalkInstances(node, [&](BSTR key, ISampleNode& instance) {
            const LONG id = std::wcstol(key, nullptr, 10);
            auto* const info =
                Given<IUserSessionInfo>([&](IUserSessionInfo** given) { sessions.GetSession(id, given); });
            const jobject session = ReadSession(*info);
            info->Release();
            AddFigures(session, instance);
            m_java.Call(sample, m_ids.samplePutSession, session);
        });
        return sample;
    }

    [[nodiscard]] jobject ReadSession(IUserSessionInfo& info) const {
        LONG id = 0;
        info.get_id(&id);
        const jstring sid = ReadText([&](BSTR* text) { info.get_sid(text); });
        const jstring user = ReadText([&](BSTR* text) { info.get_user(text); });
        const jstring domain = ReadText([&](BSTR* text) { info.get_domain(text); });
        SHORT state = 0;
        info.get_state(&state);
        const auto isConnected = static_cast<jboolean>(state == 1);
        const jobject session = m_java.Make(m_ids.session, jint{id}, sid, user, domain, isConnected);

        auto* const box = Given<IPropertyBox>([&](IPropertyBox** given) { info.get_propertyBox(given); });
        WalkTexts(*box,
                  [&](jstring name, jstring value) { m_java.Call(session, m_ids.sessionPutProperty, name, value); });
        box->Release();
        return session;
    }

    /// Metrics and applications of a session.
    void AddFigures(jobject session, ISampleNode& node) const {
        AddMetrics(session, m_ids.sessionPutMetric, node);
        WalkInstances(node, [&](BSTR key, ISampleNode& instance) {
            const jobject application = m_java.Make(m_ids.application, m_java.MakeText(View(key)));
            AddMetrics(application, m_ids.applicationPutMetric, instance);
            m_java.Call(session, m_ids.sessionPutApplication, application);
        });
    }

    [[nodiscard]] jobject ReadExtendedSample(ISampleNode& node, INameValueEnumerator* metrics) const {
        const jobject sample = MakeSample(node);
        WithValues(metrics, [&](std::wstring_view name, const VARIANT& value) {
            const jobject metric = m_java.Make(m_ids.metric, m_java.MakeText(name));
            AddValues(metric, m_ids.metricAddInstance, Queried<INameValueEnumerator>(value.punkVal));
            m_java.Call(sample, m_ids.samplePutMetric, metric);
        });
        return sample;
    }

    /// Each value of the box as a text, with its name, to `put(jstring name, jstring value)`.
    template <typename Put>
    void WalkTexts(IPropertyBox& box, const Put& put) const {
        auto* const values =
            Given<INameValueEnumerator>([&](INameValueEnumerator** given) { box.get_enumerator(given); });
        WithValues(values, [&](std::wstring_view name, VARIANT& value) {
            if (value.vt != VT_BSTR) {
                VariantChangeType(&value, &value, 0, VT_BSTR);
            }
            const jstring javaName = m_java.MakeText(name);
            put(javaName, m_java.MakeText(View(value.bstrVal)));
        });
    }

    template <typename Ask>
    [[nodiscard]] jstring ReadText(const Ask& ask) const {
        return WithText(ask, [&](std::wstring_view text) { return m_java.MakeText(text); });
    }

private:
    [[nodiscard]] jobject MakeSample(ISampleNode& node) const {
        DATE time = 0;
        node.get_time(&time);
        return m_java.Make(m_ids.sample, DateToJavaTime(time));
    }

    void AddMetrics(jobject target, jmethodID put, ISampleNode& node) const {
        AddValues(target, put,
                  Given<INameValueEnumerator>([&](INameValueEnumerator** given) { node.get_metrics(given, 1); }));
    }

    void AddValues(jobject target, jmethodID put, INameValueEnumerator* values) const {
        WithValues(values, [&](std::wstring_view name, const VARIANT& value) {
            const jobject metric = m_java.Make(m_ids.metric, m_java.MakeText(name));
            PutValue(metric, value);
            m_java.Call(target, put, metric);
        });
    }

    void PutValue(jobject metric, const VARIANT& value) const {
        switch (value.vt) {
            case VT_I4:
                return m_java.Call(metric, m_ids.metricPutLong, jlong{value.lVal});
            case VT_UI4:
                return m_java.Call(metric, m_ids.metricPutLong, jlong{value.ulVal});
            case VT_I8:
                return m_java.Call(metric, m_ids.metricPutLong, jlong{value.llVal});
            case VT_R8:
                return m_java.Call(metric, m_ids.metricPutDouble, jdouble{value.dblVal});
            default:
                return m_java.Call(metric, m_ids.metricPutText, m_java.MakeText(View(value.bstrVal)));
        }
    }

    template <typename Use>
    void WalkInstances(ISampleNode& node, const Use& use) const {
        auto* const instances =
            Given<IInstanceEnumerator>([&](IInstanceEnumerator** given) { node.get_instances(given); });
        BSTR key = nullptr;
        ISampleNode* instance = nullptr;
        while (instances->Next(&key, &instance) == S_OK) {
            use(key, *instance);
            SysFreeString(key);
            instance->Release();
            key = nullptr;
        }
        instances->Release();
    }

    const Java& m_java;
    const JavaIds& m_ids;
};
