// What tests of the tree start from: a window of its own, and a client that asks for the tree and acts on it.

#pragma once

#include "panel_qml.h"
#include "panel_remote.h"
#include "panel_view.h"

#include <QJsonArray>
#include <QQuickItem>

using namespace Qt::StringLiterals;

class PanelTreeTest : public QObject
{
protected:
    void load(const QByteArray &qml)
    {
        m_window = loadWindow(m_engine,
                              "Window { id: root; width: 758; height: 979; visible: true\n"
                              "property var log: []\nfunction note(t) { log = log.concat([t]) }\n"
                                  + qml + "\n}");
        QVERIFY(panel_view::waitUntilStill());
    }
    QStringList log() const { return m_window->property("log").toStringList(); }
    QList<QJsonObject> nodes() { return flat(m_remote.ask(u"tree"_s).value(u"tree"_s).toArray()); }
    QStringList names()
    {
        QStringList names;
        for (const QJsonObject &node : nodes()) {
            if (node.value(u"role"_s) != u"StatusBar"_s)
                names.append(node.value(u"name"_s).toString());
        }
        return names;
    }
    QString act(const QString &command, const QString &name, int n = 1)
    {
        const QJsonObject answer = m_remote.ask(command, {{u"name"_s, name}, {u"n"_s, n}});
        if (answer.contains(u"message"_s))
            qInfo("%s", qUtf8Printable(answer.value(u"message"_s).toString()));
        return code(answer);
    }

    /// All of these and what is below them, in the order of the tree.
    static QList<QJsonObject> flat(const QJsonArray &nodes)
    {
        QList<QJsonObject> all;
        for (const QJsonValue &node : nodes) {
            all.append(node.toObject());
            all.append(flat(node.toObject().value(u"children"_s).toArray()));
        }
        return all;
    }

    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    PanelRemote m_remote;
};
