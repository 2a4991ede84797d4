#include "instances/channeladdress.h"

namespace instances {

QHostAddress channelAddress()
{
    static const QHostAddress address;
    return address;
}

} // namespace instances
