// The windows beside the main window: BINGO, help and its printing, about, voices.

#include "support/room.h"

#include <QDesktopServices>
#include <QElapsedTimer>
#include <QListWidget>
#include <QPrintDialog>
#include <QProcess>
#include <QScrollBar>
#include <QSlider>

namespace {

void writeHelp(const QByteArray &text)
{
    QFile file(QCoreApplication::applicationDirPath() + "/help.txt");
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no help text");
}

/// Answers every printer dialog: prints into a file, or cancels where none is given.
class PrinterChoice
{
public:
    explicit PrinterChoice(const QString &file)
    {
        m_timer.callOnTimeout([this, file] {
            auto *modal = QApplication::activeModalWidget();
            if (auto *question = qobject_cast<QMessageBox *>(modal)) // the file is there already
                question->button(QMessageBox::Yes)->click();
            if (auto *dialog = qobject_cast<QPrintDialog *>(modal))
                answer(dialog, file);
        });
        m_timer.start(1);
    }
    QString offers;

private:
    void answer(QPrintDialog *dialog, const QString &file)
    {
        offers = dialog->printRange() == QAbstractPrintDialog::Selection ? "selection" : "all";
        offers += dialog->findChild<QWidget *>("from")->isVisible() ? " and pages" : "";
        auto *printers = dialog->findChild<QComboBox *>("printers");
        printers->setCurrentIndex(printers->count() - 1); // "Print to File (PDF)"
        dialog->findChild<QLineEdit *>("filename")->setText(file);
        file.isEmpty() ? dialog->reject() : dialog->accept();
    }
    QTimer m_timer;
};

/// The words of the printed pages, without the pages' numbers.
QStringList wordsOf(const QString &pdf)
{
    QProcess tool;
    tool.start("pdftotext", {pdf, "-"});
    tool.waitForFinished();
    QStringList words;
    for (const QString &page : QString::fromUtf8(tool.readAll()).split('\f', Qt::SkipEmptyParts))
        words += page.simplified().section(' ', 0, -2).split(' ');
    return words;
}

} // namespace

class TestWindows : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void browse(const QUrl &address) { m_browsed += address.host(); }

private Q_SLOTS:
    /// The word at every tick: its size, its colour, and whether its line stands where it stood, 100 points below.
    void bingo()
    {
        Room room;
        room.play("9 cBingo");
        const QPointer<QWidget> bingo = room.find("frmBingo");
        QCOMPARE(bingo->geometry(), room.window->frameGeometry());
        QVERIFY(bingo->windowFlags() & Qt::FramelessWindowHint);
        auto *display = bingo->findChild<QTextEdit *>("RTB1");
        auto *timer = bingo->findChild<QTimer *>("Timer1");
        QCOMPARE(timer->interval(), 500);
        QTextCursor word(display->document());
        word.setPosition(1);
        const double height = display->cursorRect(word).height();
        QStringList seen;
        for (int i = 0; i <= 16; ++i) {
            const QRect letter = display->cursorRect(word);
            QVERIFY2(letter.top() > 120, qPrintable(QString("tick %1: at %2").arg(i).arg(letter.top())));
            QHash<QRgb, int> colors;
            const QImage picture = display->viewport()->grab().toImage();
            for (int y = letter.top(); y < qMin(letter.bottom(), picture.height()); y += 3) {
                for (int x = 0; x < picture.width(); x += 3)
                    ++colors[picture.pixel(x, y)];
            }
            colors.remove(0xFFF0F0F0);
            const auto most = std::max_element(colors.begin(), colors.end());
            seen += QString("%1 %2").arg(10 * qRound(25 * letter.height() / height)).arg(most.key() & 0xFFFFFF, 6, 16);
            room.tick(timer);
        }
        QCOMPARE(seen.join('|').replace(' ', '0').replace("00", " 0"), "");
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestWindows>(argc, argv);
}

#include "tst_windows.moc"
