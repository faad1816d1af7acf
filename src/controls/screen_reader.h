#pragma once

#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <array>

namespace controls {

/// Says sentences to those who hear the program through a screen reader. Nothing of it is seen, and a
/// sentence costs next to nothing while no screen reader listens. To a screen reader it is the status bar of
/// its window, whose accessible name is read out on demand.
class ScreenReader : public QWidget
{
    Q_OBJECT

public:
    explicit ScreenReader(QWidget *window);
    /// Says a sentence once, when the running handler has ended and no question is open.
    void say(const QString &sentence);
    /// Says nothing until `window` is in front: screen readers break off when a window comes to the front.
    void waitFor(QWidget *window) { m_opening = window; }

private:
    void sayWaiting();
    void tell(const QString &sentence);

    QStringList m_waiting;
    QPointer<QWidget> m_opening;
    std::array<QWidget *, 4> m_notices{}; // before Qt 6.8; they take turns
    std::size_t m_turn = 0;
};

} // namespace controls
