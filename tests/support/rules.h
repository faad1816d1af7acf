#pragma once

#include <QtCore>

/// What is seen, heard and found out at one moment: the texts of controls by their names, the rest by names
/// of its own.
using Facts = QMap<QString, QString>;

/// The rules of the game a second time, without a line of the program: what each step leads to.
class Rules
{
public:
    /// Takes the patterns by lines: "4 Stamp; N; XX... XX... ..... ..... ..... / ...".
    explicit Rules(const QStringList &patterns)
    {
        for (const QString &line : patterns)
            m_patterns += line.section(' ', 1).split("; ");
        put(0);
    }
    /// Takes a step of a script: "click", "cButt(33)".
    void play(const QString &verb, const QString &what)
    {
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
            {"click chkMakeVoiceCall", [&] { flip(what, "Make Voice Calls"), toEntry(); }},
            {"choose mnuShaddow", [&] { flip(what, "Shaddow Buttons"); }},
            {"type", [&] { type(what); }},
            {"enter", [&] { type(what + '\r'); }},
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
        QStringList reds;
        for (const int n : m_red)
            reds += spoken(n);
        for (int n = 1; n <= 75; ++n)
            all[QString("cButt(%1) in words").arg(n)] =
                spoken(n) + (m_called[n] ? ", called #a0a0a0" : ", not called #f0f0f0") +
                (m_red.contains(n) ? " red" : "");
        for (int i = 1; i <= 25; ++i)
            all[QString("tDemo(%1) in words").arg(i)] = cell(i) + (isLit(i) ? " #000000" : " #ffffff");
        all.insert({
            {"lblCallCnt", QString("Balls Called: %1").arg(m_count)},
            {"state in words", (m_last.mid(0, 1) << QString("%1 called").arg(m_count)).join(", ")},
            {"RTB2 in words", listed(reds)},
            {"RTB3", m_last.value(0).remove(' ')},
            {"RTB3 in words", listed(m_last.mid(0, 1))},
            {"RTB4", m_last.mid(1).join(',').remove(' ').replace(',', ' ')},
            {"RTB4 in words", listed(m_last.mid(1))},
            {"boxes", std::exchange(m_boxes, {}).join(". ")},
            {"said", std::exchange(m_said, {}).join(". ")},
        });
        return all;
    }

private:
    static QString label(int n) { return QString("BINGO")[(n - 1) / 15] + QString::number(n); }
    static QString spoken(int n) { return label(n).insert(1, ' '); }
    static QString listed(const QStringList &texts) { return texts.isEmpty() ? "none" : texts.join(", "); }
    bool isLit(int i) const { return m_card[i - 1] == 'X'; }
    QString cell(int i) const
    {
        const QString place = "Pattern row %1, column %2, ";
        return place.arg((i + 4) / 5).arg(QString("BINGO")[(i - 1) % 5]) + (isLit(i) ? "lit" : "unlit");
    }
    bool isOn(const QString &mark) const { return now[mark].endsWith("true"); }
    bool isYes(const QString &question)
    {
        m_boxes += "Clear Board: " + question + ", Are you sure?";
        return m_answer == "Y";
    }
    void toEntry() { now["focus"] = "Text1"; }
    void flip(const QString &mark, const QString &caption)
    {
        now[mark] = caption + (isOn(mark) ? "" : " true");
        m_said += caption + (isOn(mark) ? ", checked" : ", not checked");
    }

    // ---- Calls
    void number(int n)
    {
        if (!m_called[n]) {
            m_called[n] = true;
            m_last = (QStringList(spoken(n)) + m_last).mid(0, 5);
            ++m_count;
            m_red = m_called.keys(true);
            if (!isOn("chkMakeVoiceCall"))
                m_said += QString("%1, %2 called").arg(spoken(n)).arg(m_count);
        } else if (isYes("Clearing button")) {
            m_called[n] = false;
            m_red = m_called.keys(true);
            m_said += spoken(n) + " not called";
        }
        now["Text1"] = "";
        now["focus"] = isCounting() ? "cPause" : "Text1";
    }
    void draw()
    {
        const QList<int> left = m_called.keys(false);
        if (!left.isEmpty())
            return number(left[int(m_fraction * double(left.size()))]);
        m_boxes += "Vellomir: Full Board....";
        if (isOn("chkAutoCall"))
            startCalls(true);
    }
    void clear()
    {
        if (isCounting())
            playOrPause();
        if (isYes("Clearing board")) {
            m_last.clear();
            m_count = 0;
            put(m_pattern);
            m_red = m_called.keys(true);
            m_said += "Board cleared";
        }
        now["Text1"] = "";
        toEntry();
    }

    // ---- What is typed
    void type(const QString &text)
    {
        for (const QChar sign : text) {
            const bool isAtPause = now["focus"] == "cPause";
            if (isAtPause && (sign == '\r' || sign == 'P'))
                playOrPause();
            else if (!isAtPause || !isCounting())
                typeInEntry(sign);
        }
    }
    void typeInEntry(QChar sign)
    {
        toEntry();
        const QString entry = std::exchange(now["Text1"], QString());
        if (sign == '\r')
            enter(entry.mid(entry.startsWith('n')).toInt());
        else
            sign == 'r' ? draw() : sign == 'P' ? playOrPause() : void(now["Text1"] = entry + sign);
    }
    void enter(int n) { n >= 1 && n <= 75 ? number(n) : void(m_said += "Nothing called"); }

    // ---- Automatic calls
    bool isCounting() const { return !now["Timer2"].isEmpty(); }
    void callByItself(bool on, bool counting)
    {
        now["chkAutoCall"] = on ? "Auto Draw Every true" : "Auto Draw Every";
        now["Timer2"] = counting ? "1000" : "";
        now["cPause"] = counting ? "Pause" : "Play";
        now["lblAutoCall"] = counting ? now["lblAutoCall"] : on ? "Paused" : "";
        m_said += counting ? "Automatic calling, every 10 seconds" : on ? "Paused" : "Automatic calling off";
    }
    void startCalls(bool on)
    {
        m_left = 2;
        callByItself(on, on);
        now["focus"] = on ? "cPause" : "Text1";
    }
    void playOrPause() { isOn("chkAutoCall") ? callByItself(true, !isCounting()) : void(); }
    void second()
    {
        if (isCounting() && --m_left < 1) {
            m_left = 10;
            draw();
        }
        if (isCounting())
            now["lblAutoCall"] = QString("Auto Call In : %1").arg(m_left);
    }

    // ---- Patterns
    void selectPattern(int id)
    {
        put(m_pattern == id ? 0 : id);
        toEntry();
        const QString caption = m_patterns[id][0], columns = m_patterns[id][1];
        m_said += caption + (m_pattern != id                 ? " put away"
                             : m_called.keys(true).isEmpty() ? ", all columns in play"
                                                             : ", columns " + columns + " out of play");
    }
    void put(int id)
    {
        m_pattern = id;
        m_forms = QString(m_patterns[id][2]).remove(' ').split('/');
        m_card = m_forms.size() == 1 ? m_forms[0] : QString(25, '.');
        now["Timer1"] = m_forms.size() > 1 ? "100" : "";
        for (int n = 1; n <= 75; ++n)
            m_called[n] = isOn("mnuShaddow") && m_patterns[id][1].contains(label(n)[0]);
    }
    void nextForm()
    {
        if (now["Timer1"].isEmpty())
            return;
        m_forms += m_card = m_forms.takeFirst();
        now["Timer1"] = "1500";
    }
    void turn(int i)
    {
        m_card[i - 1] = isLit(i) ? '.' : 'X';
        toEntry();
        m_said += cell(i);
    }

    Facts now{
        {"focus", "Text1"}, {"chkMakeVoiceCall", "Make Voice Calls"}, {"mnuShaddow", "Shaddow Buttons true"}};
    QList<QStringList> m_patterns{{"", "", QString(25, '.')}};
    QMap<int, bool> m_called;
    QList<int> m_red;
    QStringList m_last, m_forms, m_boxes, m_said;
    QString m_card, m_answer;
    int m_count = 0, m_pattern = 0, m_left = 0;
    double m_fraction = 0.5;
};
