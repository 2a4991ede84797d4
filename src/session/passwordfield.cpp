#include "session/passwordfield.h"

#include <QLineEdit>
#include <QValidator>

namespace session {

namespace {

bool isLineEnd(QChar c)
{
    return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

class NoLineEnds : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString& input, int& position) const override
    {
        for (int i = input.size() - 1; i >= 0; --i) {
            if (!isLineEnd(input.at(i)))
                continue;
            input.remove(i, 1);
            if (i < position)
                --position;
        }
        return Acceptable;
    }
};

} // namespace

void makePasswordField(QLineEdit* field)
{
    field->setEchoMode(QLineEdit::Password);
    field->setValidator(new NoLineEnds(field));
}

} // namespace session
