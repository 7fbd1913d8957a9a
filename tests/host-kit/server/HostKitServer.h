#pragma once

#include <windows.h>

#include <unknwn.h>

/// The server's export that says which class object it hands out: it references that one and drops the one before;
/// null for none. Any thread.
using SetHostKitClassObjectFunction = void(STDAPICALLTYPE*)(IUnknown* classObject);
constexpr char kSetHostKitClassObject[] = "SetHostKitClassObject";
