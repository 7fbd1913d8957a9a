#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

struct ISampleNode;

/// Walks the nodes below a node of a sample, once, from the first to the last.
struct IInstanceEnumerator : IUnknown {
    // The library never asks for this interface by its ID, so a host may give it one of its own.
    static constexpr IID kId = {0x5E0C21A4, 0x93D7, 0x4F0B, {0x8E, 0x6A, 0x2B, 0x7D, 0x14, 0x9C, 0x50, 0xF3}};

    // Slot 3: the host's own. The library never calls it.
    virtual HRESULT STDMETHODCALLTYPE Reserved3() = 0;

    /// Slot 4. S_OK with the next node; any other result ends the walk.
    /// @param key      receives the node's key; the caller frees it
    /// @param instance receives the node; one reference goes to the caller
    virtual HRESULT STDMETHODCALLTYPE Next(BSTR* key, ISampleNode** instance) = 0;

protected:
    ~IInstanceEnumerator() = default;
};
