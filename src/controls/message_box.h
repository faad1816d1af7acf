#pragma once

#include <QString>

class QWidget;

namespace base {
struct Error;
} // namespace base

/// The program's modal message boxes.
namespace controls {

/// Shows a notice with an OK button. Its title is the program's name.
void notice(QWidget *owner, const QString &text);

/// Asks a question; true for Yes. Escape, and Enter without a choice, answer No.
bool confirmed(QWidget *owner, const QString &text, const QString &title);

/// Shows the "Run-Time Error" box. While another box is open, or a menu, it returns at once, and the error
/// is shown when that has been closed: no box ever covers another, or takes the keyboard from a menu.
void reportError(QWidget *owner, const base::Error &error);

} // namespace controls
