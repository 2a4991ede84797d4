#pragma once

#include <QLabel>

// A label for texts that others chose, such as window titles: shows them as they are, markup included, on one
// line, with dots where they do not fit. Its text never makes a layout wider; it takes the width that it
// gets.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    // What the whole line would take.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont fittingFont() const;
    QString line() const;
};
