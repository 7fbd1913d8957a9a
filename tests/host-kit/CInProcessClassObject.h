#pragma once

#include <windows.h>

#include <unknwn.h>

/// While it lives, CoCreateInstance in this apartment finds the service class: an STA's registration is seen by its own
/// thread alone, one of the MTA by all its threads and by those without an apartment, not by STA threads.
/// Destroy it on the thread, and in the apartment, that made it.
class CInProcessClassObject {
public:
    /// References `classObject`. Throws CHresultException.
    explicit CInProcessClassObject(IUnknown* classObject);
    ~CInProcessClassObject();

    CInProcessClassObject(const CInProcessClassObject&) = delete;
    CInProcessClassObject& operator=(const CInProcessClassObject&) = delete;

private:
    DWORD m_registration = 0;
};
