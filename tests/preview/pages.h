// The pages that `make preview` and `make screenshots` know. To add one: an entry in pages().
#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>

class QWidget;
class Stage;

// A page that was opened.
struct Scene
{
    QWidget* page = nullptr;     // what a picture shows; null: everything on the screen
    std::shared_ptr<void> owner; // of everything that was made for it
};

// A moment in a page's life.
struct State
{
    QString name;
    std::function<void(const Scene&)> enter; // none: as it was opened
    std::function<void(Stage&)> prepare;     // before it is opened
};

struct Page
{
    QString name;
    QString about;
    std::function<Scene(Stage&)> open; // and shows it
    QList<State> states;
};

QList<Page> pages();
