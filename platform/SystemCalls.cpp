#include "platform/SystemCalls.h"

namespace qv::platform {

IFaultInjector* SetFaultInjector(IFaultInjector* injector) {
    return g_faultInjector.exchange(injector);
}

}  // namespace qv::platform
