// What pages have in common: what a person does to them, and contents of unusual kinds.
#pragma once

#include "preview/pages.h"

#include <QStringList>
#include <QWidget>

namespace preview {

constexpr char pageColor[] = "e6eaed";

// The n-th of the page's widgets of a kind.
template <typename Widget>
Widget* nth(const Scene& scene, int n)
{
    const auto all = scene.page->findChildren<Widget*>();
    if (n >= all.size())
        qFatal("no such widget");
    return all.at(n);
}

void hover(QWidget* widget);
void press(QWidget* widget);
// With the frame of the keyboard.
void focus(QWidget* widget);

// Shows a page and waits until it is seen.
void show(QWidget* page);
// Asks a question whose box stays open; the picture is taken within.
void ask(std::function<void()> question);

// A page as it was opened.
State rest();

// Names of applications.
QStringList strangeNames();
void offerMany(Stage& stage);

} // namespace preview
