// Work on files that may take long.
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace files {

class Progress;

// What the user is shown while it lasts.
struct LongWork
{
    QString title;
    bool canBeCancelled = false;
};

// Runs `work` on a thread of its own and returns when it has ended. When that takes longer than half a
// second, a modal dialog of `parent` shows what it is at, and events are processed: whatever the caller knows
// may have changed when this returns, `parent` may be gone. GUI thread.
void run(QWidget* parent, const LongWork& description, Progress* progress, const std::function<void()>& work);

} // namespace files
