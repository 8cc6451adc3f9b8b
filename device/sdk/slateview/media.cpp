// Which storages are in.

#include "slateview.h"

#include "call.h"

#include <facts.h>

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

int isUsbStorMounted(void)
{
    return answer("isUsbStorMounted", facts().usbPresent ? 1 : 0);
}
