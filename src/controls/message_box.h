#pragma once

#include <QString>

class QWidget;

namespace files {
struct Error;
} // namespace files

/// The program's modal message boxes. A line break in a text is CR LF or LF.
namespace controls {

/// Shows a notice with an OK button. An empty title stands for the program's own.
void notice(QWidget *owner, const QString &text, const QString &title = {});

/// Asks a question with Yes and No and answers whether it was Yes. Escape, and Enter without a choice, are
/// No.
bool confirmed(QWidget *owner, const QString &text, const QString &title);

/// Shows the "Run-Time Error" box. While another of the program's boxes is open it returns at once, and the
/// error is shown after that one has been closed: no box ever covers another.
void reportError(QWidget *owner, const files::Error &error);

} // namespace controls
