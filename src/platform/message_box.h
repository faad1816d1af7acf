#pragma once

#include <QString>

class QWidget;

/// The program's modal message boxes. A line break in a text is CR LF or LF.
namespace platform {

/// Shows a notice with an OK button. An empty title stands for the program's own.
void notice(QWidget *owner, const QString &text, const QString &title = {});

/// The same with the exclamation icon.
void warning(QWidget *owner, const QString &text, const QString &title);

/// Asks a question with Yes and No and answers whether it was Yes. Escape, and Enter without a choice, are
/// No.
bool confirmed(QWidget *owner, const QString &text, const QString &title);

} // namespace platform
