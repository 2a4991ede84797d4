#pragma once

class QLineEdit;

namespace session {

// Lets the field hide what is typed, and hold no line ends: they come with what is pasted, cannot be seen,
// and nobody can type them where the password is asked for next.
void makePasswordField(QLineEdit* field);

} // namespace session
