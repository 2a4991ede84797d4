// From a catalogue entry to something that a process can be started with. Functions on values; what they read
// besides their arguments is said with each.
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

namespace catalogue {

// The program that reaches another host, found through the PATH.
constexpr char remoteClient[] = "xfreerdp";

// `command` with the tokens %programw6432%, %programfiles(x86)%, %programfiles%, %windir%, %systemroot%,
// %system32%, %system%, %homepath%, %temp% and %tmp% (in any case) replaced by the environment variables of
// these names, every other "%" removed and doubled backslashes made single.
QString expandEnvironment(const QString& command);

// Whether an application on a host of this address and system ("windows", in any case) has to be reached
// through the remote client.
bool needsRemote(const QString& serverAddress, const QString& serverType);

// Whether a launch goes through the remote client: address and type are known, and need it.
bool isRemoteLaunch(const QString& serverAddress, const QString& serverType);

// The arguments of the process, in one of three forms: for the remote client (isRemoteLaunch()), for a chroot
// runner (setting ChrootEnvironment), or for the program itself.
//
// `file` is empty or an absolute path with "/"; `size` is the remote screen's, in pixels; `windowId` is its
// parent window. The remote form carries the user's name and password in clear text, and reads credentials
// and settings; its launcher's line keeps its %programfiles%, which the serving host expands.
//
// Wanted: in that line nothing stands between the program and its first argument, and the channel's address
// is empty.
QStringList launchArguments(const QString& execPath, const QStringList& arguments, const QString& file,
                            qint32 windowId, const QSize& size, quint16 port, const QString& serverType,
                            const QString& serverAddress);

} // namespace catalogue
