// The machine-wide settings, read from the settings file at every call.
#pragma once

#include <QString>

namespace env {

// Keys of the settings file.
namespace key {
constexpr char serverPort[] = "Server/TidewellServerPort";
constexpr char serverAddress[] = "Server/TidewellServerAddress";
constexpr char windowManagerBehaviour[] = "Desktop/WindowManagerBehaviour";
constexpr char sambaServer[] = "SambaServer";
constexpr char sambaSharedPath[] = "SambaSharedPath"; // with its leading backslash
constexpr char sambaDomain[] = "SambaDomain";
constexpr char chrootEnvironment[] = "ChrootEnvironment"; // a boolean
} // namespace key

// The value of `key`, empty when it is missing; null without opening the file when `key` is empty.
QString readSetting(const QString& key);

// The value of `key` by isTrue(); a missing key is false.
bool readBooleanSetting(const QString& key);

// Any decimal number but zero is true, and so is "true" in any case; everything else is false.
bool isTrue(const QString& value);

// The TCP port of the central server as it is written, 0 when it is missing or no number. A value below 1
// means that there is no server.
int serverPort();

// Reads Desktop/WindowManagerBehaviour once for the life of the process: "standard", in any case, sets the
// flag that standardWindowManager() returns, anything else clears it. The flag is false before the first
// call.
void readWindowManagerBehaviour();
bool standardWindowManager();

} // namespace env
