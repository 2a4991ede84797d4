#pragma once

#include <QCoreApplication>
#include <QTranslator>

// Translates every text to "CONTEXT|TEXT" while it lives.
class MarkingTranslator : public QTranslator
{
public:
    MarkingTranslator() { QCoreApplication::installTranslator(this); }
    ~MarkingTranslator() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return QString::fromUtf8(context) + QLatin1Char('|') + QString::fromUtf8(text);
    }
};
