// How the task buttons share the task bar with the task panel, and what the arrows do when there are too many
// of them. Functions on values; widths are in pixels, positions are those of the task buttons, from 0.
#pragma once

namespace shell {

constexpr int taskBarHeight = 42;
constexpr int taskButtonWidth = 48;

// What is shown of the tasks.
struct TaskFit
{
    int panelWidth = 0;
    // How many steps to the left the first task is; 0 when all tasks are shown, without arrows.
    int scrollLimit = 0;
    int firstVisible = 0;
    int visible = 0; // tasks from firstVisible on; negative when not even the arrows have room

    bool scrolls() const { return scrollLimit >= 1; }
    bool shows(int task) const
    {
        return !scrolls() || (task >= firstVisible && task < firstVisible + visible);
    }
};

// For a screen of this width, `fixed` buttons at its left (and the log-off button at its right) and so many
// tasks. When they do not fit, the view is at their end.
TaskFit fitTasks(int screenWidth, int fixed, int tasks);

// What one press of an arrow changes. A position that no task has stands for none.
struct ScrollStep
{
    int hide = -1;
    int show = -1;
    int firstVisible = 0;
};

// Nothing changes at the left end.
ScrollStep scrollLeft(int firstVisible, int scrollLimit, int tasks);
// Wanted: there is no end on the right; the arrow is disabled there.
ScrollStep scrollRight(int firstVisible, int scrollLimit, int tasks);

} // namespace shell
