#pragma once

#include <QMenuBar>
#include <QPointer>

namespace controls {

/// The menu bar of a window. F10 leads into it and out of it, as Alt does. A timer must not move the focus
/// while the keyboard is in it, for the next key would act on what the user does not look at: it waits for
/// `left`.
class MenuBar : public QMenuBar
{
    Q_OBJECT

public:
    explicit MenuBar(QWidget *window);
    ~MenuBar() override;

    /// True while the keyboard is in this bar, or on its way there with Alt.
    bool hasKeyboard() const;
    /// True while the keyboard is in any menu bar, menu or open list, or on its way there with Alt.
    static bool isInUse();

Q_SIGNALS:
    /// The keyboard has left the bar, and the focus is where it was before.
    void left();

private:
    void toggle();
    void followFocus(QWidget *old, QWidget *now);

    QPointer<QWidget> m_before; // what had the focus
};

} // namespace controls
