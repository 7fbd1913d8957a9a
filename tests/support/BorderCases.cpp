// Includes of another folder's headers; CASE 0 is one that is allowed.

#if CASE == 0
#include "CWideString.h"
#elif CASE == 1
#include "CJavaVM.h"
#elif CASE == 2
#include "java/CJavaVM.h"
#elif CASE == 3
#include "boost/version.hpp"
#elif CASE == 4
#include "CRMICommManagerImpl.h"
#elif CASE == 5
#include "linux/version.h"  // there on every build machine: the C library brings it
#elif CASE == 6
#include "ProductName.h"
#endif
