#pragma once

namespace winapi {

// Whether the current thread's token has the local Administrators group enabled. False also when Windows
// cannot tell. A token filtered by account control has the group disabled and so does not count as a
// member's.
bool userIsAdministrator();

} // namespace winapi
