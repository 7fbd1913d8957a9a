#pragma once

#include <string>
#include <utility>
#include <vector>

#include "HostObjects.h"

// A host's machine, and one object that serves every kind of item as its data: it is a session, a sample, and the
// properties of extended data and of a route.

inline SystemData MakeItemSystem() {
    SystemData system;
    system.machineName = L"desk";
    system.fqdn = L"desk.lan";
    system.machineId = L"machine 7";
    system.virtualMachineId = L"vm 7";
    system.machineUniqueId = L"unique 7";
    system.isDesktop = VARIANT_TRUE;
    system.totalMemory = 4096;
    system.networkInterfaces = {{L"wire", L"mac", L"ip", L"mask", L"net", 100}};
    return system;
}

inline PropertyBoxData MakeBox(std::string name, std::vector<PropertyData> properties) {
    PropertyBoxData box;
    box.name = std::move(name);
    box.properties = std::move(properties);
    return box;
}

inline SessionData MakeItemSession() {
    SessionData session;
    session.id = 5;
    session.sid = L"S-1-5";
    session.user = L"ann";
    session.domain = L"lab";
    session.label = L"lab\\ann";
    session.properties = MakeBox("Session box", {{L"shell", MakeText(L"explorer")}});
    return session;
}

/// Of the day after 1970-01-01. What is in it is session 5 for a sample, an application for a session's figures.
inline SampleData MakeItemSample() {
    SampleData sample;
    sample.time = 25570.0;
    sample.metrics = {{L"cpu", MakeInt(7)}};
    sample.instances = {{L"5", {}}};
    sample.instances[0].sample.metrics = {{L"load", MakeDouble(0.5)}};
    return sample;
}

inline DataObjectData MakeItemData(const CRecordPointer& record) {
    const auto map = MakePropertyBox(record, MakeBox("Map", {{L"action", MakeText(L"trace")}}));
    DataObjectData data;
    data.sample = MakeItemSample();
    data.session = MakeItemSession();
    data.properties =
        MakeBox("Data", {{L"meta-data", MakeInterface(map.Get())},
                         MakeExtendedMetric(L"metrics", {MakeExtendedMetric(L"disk", {{L"C:", MakeInt(9)}})}),
                         {L"metadata", MakeInterface(map.Get())},
                         {L"route", MakeText(L"hop 1; hop 2")}});
    return data;
}
