#pragma once

#include "announcement.h"

#include <QWidget>

class QListWidget;
class QSlider;

/// Chooses a voice and a speed, -10 to 10, for the spoken calls. It shows nothing of the choice in force, and
/// changes it only when cSave is pressed.
class frmVoices : public QWidget
{
    Q_OBJECT

public:
    /// `choice` must outlive the window.
    frmVoices(voice::VoiceChoice &choice, QWidget *owner);

    /// Opens the speech service, which fills the list as soon as it answers. Reports its failures.
    void Form_Load();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void listVoices();
    void cListen_Click();
    void cSave_Click();
    bool voiceSelected();

    voice::VoiceChoice &m_choice;
    std::unique_ptr<speech::SpVoice> oVoice;
    QStringList m_listed; ///< what stands in List1
    QListWidget *List1 = nullptr;
    QSlider *Slider1 = nullptr;
};
