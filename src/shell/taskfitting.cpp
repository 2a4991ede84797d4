#include "shell/taskfitting.h"

#include <algorithm>

namespace shell {

namespace {
constexpr int mostPanelWidth = 250; // beyond what the division by buttons leaves over
} // namespace

TaskFit fitTasks(int screenWidth, int fixed, int tasks)
{
    const int spare = screenWidth - (fixed + 3) * taskButtonWidth; // with two tasks beside the fixed buttons
    const int room = screenWidth - (fixed + 1) * taskButtonWidth;
    const int fitting = (room - std::min(spare, mostPanelWidth)) / taskButtonWidth;
    TaskFit fit;
    fit.panelWidth = room - fitting * taskButtonWidth;
    fit.visible = tasks;
    if (tasks > fitting) {
        fit.scrollLimit = tasks - fitting + 1;
        fit.firstVisible = fit.scrollLimit;
        fit.visible = fitting - 1; // the two arrows take the room of one
    }
    return fit;
}

ScrollStep scrollLeft(int firstVisible, int scrollLimit, int tasks)
{
    if (firstVisible <= 0)
        return {-1, -1, firstVisible};
    return {firstVisible + (tasks - scrollLimit) - 1, firstVisible - 1, firstVisible - 1};
}

ScrollStep scrollRight(int firstVisible, int scrollLimit, int tasks)
{
    return {firstVisible, firstVisible + (tasks - scrollLimit), firstVisible + 1};
}

} // namespace shell
