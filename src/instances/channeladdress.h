// The address at which remote launchers reach this process's AppServer. Nothing sets it, and its text is
// empty: launchers get no address.
#pragma once

#include <QHostAddress>

namespace instances {

QHostAddress channelAddress();

} // namespace instances
