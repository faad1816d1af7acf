#pragma once

#include <QtCore>

#include <cmath>
#include <set>

/// What is seen, heard and found out at one moment: the texts of controls by their names, the rest by names
/// of its own.
using Facts = QMap<QString, QString>;

/// The rules of the game a second time, without a line of the program: what each step leads to.
class Rules
{
public:
    /// Reads the patterns from a file: "4 Stamp; N; XX... XX... ..... ..... ..... / ...".
    explicit Rules(const QString &path)
    {
        QFile file(path);
        (void)file.open(QIODevice::ReadOnly);
        for (const QString &line : QString(file.readAll()).split('\n', Qt::SkipEmptyParts))
            m_patterns += line.section(' ', 1).split("; ");
    }
    /// Takes a step of a script: "click cButt(33)", "choose cboSec 5".
    void play(const QString &step)
    {
        const QString verb = step.section(' ', 0, 0), what = step.section(' ', 1);
        const QString array = what.section('(', 0, 0);
        const int index = what.section('(', 1).remove(')').toInt();
        const QHash<QString, std::function<void()>> actions{
            {"click cButt", [&] { number(index); }},
            {"click cDemoButt", [&] { selectPattern(index); }},
            {"click tDemo", [&] { turn(index); }},
            {"click cRandNum", [&] { draw(); }},
            {"click chkAutoCall", [&] { startCalls(!isOn("chkAutoCall")); }},
            {"click cPause", [&] { playOrPause(); }},
            {"click cmdClear", [&] { clear(); }},
            {"click chkMakeVoiceCall", [&] { flip(what, "Make Voice Calls"), focusOn("Text1"); }},
            {"choose mnuShaddow", [&] { flip(what, "Shaddow Buttons"); }},
            {"type", [&] { type(what); }},
            {"enter", [&] { type(what), enter(); }},
            {"answers", [&] { m_answer = what; }},
            {"draws", [&] { m_fraction = what.toDouble(); }},
            {"seconds", [&] { second(); }},
            {"frames", [&] { nextForm(); }},
        };
        for (int times = verb == "seconds" || verb == "frames" ? what.toInt() : 1; times > 0; --times)
            actions.value(verb + ' ' + array, actions.value(verb, [] {}))();
    }

    /// What must be seen now, and what must have been said since the last time.
    Facts facts()
    {
        Facts all = now;
        QStringList last, past, reds;
        for (const int n : m_last)
            last += spoken(n), past += label(n);
        for (const int n : m_red)
            reds += spoken(n);
        for (int n = 1; n <= 75; ++n)
            all[QString("cButt(%1) in words").arg(n)] =
                spoken(n) + (m_called.count(n) ? ", called #a0a0a0" : ", not called #f0f0f0");
        for (int i = 1; i <= 25; ++i)
            all[QString("tDemo(%1) in words").arg(i)] = cell(i) + (isLit(i) ? " #000000" : " #ffffff");
        all.insert({
            {"lblCallCnt", QString("Balls Called: %1").arg(m_count)},
            {"state in words", (last.mid(0, 1) + QStringList(QString("%1 called").arg(m_count))).join(", ")},
            {"RTB3", past.value(0)},
            {"RTB3 in words", listed(last.mid(0, 1))},
            {"RTB4", past.mid(1).join(' ')},
            {"RTB4 in words", listed(last.mid(1))},
            {"RTB2 in words", listed(reds)},
            {"red", listed(reds)},
        });
        now["boxes"] = now["said"] = "";
        return all;
    }

private:
    static QString label(int n) { return QString("BINGO")[(n - 1) / 15] + QString::number(n); }
    static QString spoken(int n) { return label(n).insert(1, ' '); }
    static QString listed(const QStringList &texts) { return texts.isEmpty() ? "none" : texts.join(", "); }
    bool isLit(int i) const { return m_card[i - 1] == 'X'; }
    QString cell(int i) const
    {
        const QString place = QString("Pattern row %1, column %2, ").arg((i + 4) / 5);
        return place.arg(QString("BINGO")[(i - 1) % 5]) + (isLit(i) ? "lit" : "unlit");
    }
    bool isOn(const QString &mark) const { return now[mark].endsWith("true"); }
    void add(const QString &fact, const QString &text)
    {
        now[fact] += (now[fact].isEmpty() ? "" : ". ") + text;
    }
    bool isYes(const QString &question)
    {
        add("boxes", "Clear Board: " + question + ", Are you sure?");
        return m_answer == "Y";
    }
    void focusOn(const QString &control) { now["focus"] = control; }
    void flip(const QString &mark, const QString &caption)
    {
        now[mark] = caption + (isOn(mark) ? "" : " true");
        add("said", caption + (isOn(mark) ? ", checked" : ", not checked"));
    }

    // ---- Calls
    void number(int n)
    {
        if (!m_called.count(n)) {
            call(n);
        } else if (isYes("Clearing button")) {
            m_called.erase(n);
            m_red = m_called;
            add("said", spoken(n) + " not called");
        }
        now["Text1"] = "";
        focusOn(isOn("countdown") ? "cPause" : "Text1");
    }
    void call(int n)
    {
        m_called.insert(n);
        m_red = m_called;
        m_last = (QList<int>{n} + m_last).mid(0, 5);
        ++m_count;
        if (!isOn("chkMakeVoiceCall"))
            add("said", QString("%1, %2 called").arg(spoken(n)).arg(m_count));
    }
    void draw()
    {
        QList<int> left;
        for (int n = 1; n <= 75; ++n)
            left += m_called.count(n) ? QList<int>() : QList<int>{n};
        if (!left.isEmpty())
            return number(left[int(m_fraction * double(left.size()))]);
        add("boxes", "Vellomir: Full Board....");
        if (isOn("chkAutoCall"))
            startCalls(true);
    }
    void clear()
    {
        pause();
        if (isYes("Clearing board")) {
            m_last.clear();
            m_count = 0;
            put(m_pattern);
            m_red = m_called;
            add("said", "Board cleared");
        }
        now["Text1"] = "";
        focusOn("Text1");
    }

    // ---- What is typed
    void type(const QString &text)
    {
        for (const QChar sign : text) {
            if (now["focus"] != "Text1")
                return;
            const QString entry = std::exchange(now["Text1"], QString());
            sign == 'r' ? draw() : sign == 'P' ? playOrPause() : void(now["Text1"] = entry + sign);
        }
    }
    void enter()
    {
        if (now["focus"] == "cPause")
            return playOrPause();
        const QString entry = std::exchange(now["Text1"], QString());
        const int n = entry.mid(entry.startsWith('n')).toInt();
        n >= 1 && n <= 75 ? number(n) : add("said", "Nothing called");
    }

    // ---- Automatic calls
    void callByItself(bool on, bool counting)
    {
        now["chkAutoCall"] = on ? "Auto Draw Every true" : "Auto Draw Every";
        now["countdown"] = counting ? "true" : "false";
        now["cPause"] = counting ? "Pause" : "Play";
        now["lblAutoCall"] = counting ? now["lblAutoCall"] : on ? "Paused" : "";
        add("said", counting ? QString("Automatic calling, every 10 seconds")
                    : on     ? "Paused"
                             : "Automatic calling off");
    }
    void startCalls(bool on)
    {
        m_left = 2;
        callByItself(on, on);
        focusOn(on ? "cPause" : "Text1");
    }
    void playOrPause() { isOn("chkAutoCall") ? callByItself(true, !isOn("countdown")) : void(); }
    void pause() { isOn("countdown") ? callByItself(true, false) : void(); }
    void second()
    {
        if (isOn("countdown") && --m_left < 1) {
            m_left = 10;
            draw();
        }
        if (isOn("countdown"))
            now["lblAutoCall"] = QString("Auto Call In : %1").arg(m_left);
    }

    // ---- Patterns
    void selectPattern(int id)
    {
        put(m_pattern == id ? 0 : id);
        focusOn("Text1");
        const QString caption = m_patterns[id][0], columns = m_patterns[id][1];
        add("said", caption + (m_pattern != id    ? " put away"
                               : m_called.empty() ? ", all columns in play"
                                                  : ", columns " + columns + " out of play"));
    }
    void put(int id)
    {
        m_pattern = id;
        m_forms = QString(m_patterns[id][2]).remove(' ').split('/');
        m_card = m_forms.size() == 1 ? m_forms[0] : QString(25, '.');
        now["next form"] = m_forms.size() > 1 ? "100" : "";
        m_called.clear();
        for (int n = 1; n <= 75; ++n) {
            if (isOn("mnuShaddow") && m_patterns[id][1].contains(label(n)[0]))
                m_called.insert(n);
        }
    }
    void nextForm()
    {
        if (now["next form"].isEmpty())
            return;
        m_forms += m_card = m_forms.takeFirst();
        now["next form"] = "1500";
    }
    void turn(int i)
    {
        m_card[i - 1] = isLit(i) ? '.' : 'X';
        focusOn("Text1");
        add("said", cell(i));
    }

    Facts now{
        {"focus", "Text1"}, {"chkMakeVoiceCall", "Make Voice Calls"}, {"mnuShaddow", "Shaddow Buttons true"}};
    QList<QStringList> m_patterns{{"", "", QString(25, '.')}};
    std::set<int> m_called, m_red;
    QList<int> m_last;
    QStringList m_forms;
    QString m_card = QString(25, '.'), m_answer;
    int m_count = 0, m_pattern = 0, m_left = 0;
    double m_fraction = 0.5;
};
