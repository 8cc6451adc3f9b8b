// What the process writes to standard error while an object of this lives.

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QFile>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QTemporaryFile>

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

/// Sends file descriptor 2 to a file, for C, C++ and direct writes alike; its end puts the old one back. Any
/// amount from any thread, but writes run together (CapturedError keeps them apart, and holds less). One
/// at a time.
class StderrCapture
{
public:
    StderrCapture()
    {
        m_file.open();
        std::fflush(stderr);
        m_saved = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
        ::dup2(m_file.handle(), STDERR_FILENO);
    }
    ~StderrCapture()
    {
        std::fflush(stderr);
        ::dup2(m_saved, STDERR_FILENO);
        ::close(m_saved);
    }
    StderrCapture(const StderrCapture &) = delete;
    StderrCapture &operator=(const StderrCapture &) = delete;

    /// Everything since the beginning or the last forget().
    QByteArray text() const
    {
        std::fflush(stderr);
        QFile file(m_file.fileName()); // with a position of its own: writers share the other one
        if (!file.open(QIODevice::ReadOnly) || !file.seek(m_start))
            return {};
        return file.readAll();
    }

    void forget() { m_start += text().size(); }

    /// The device log's lines of one source, as "LEVEL FUNCTION: MESSAGE"; each must name a line from 1 on.
    QStringList logLines(const QString &source) const
    {
        const QRegularExpression form(
            QStringLiteral("^(\\d+ )%1:[1-9]\\d* (.*)$").arg(QRegularExpression::escape(source)));
        QStringList lines;
        const QStringList all = QString::fromUtf8(text()).split(u'\n');
        for (const QString &line : all) {
            const QRegularExpressionMatch match = form.match(line);
            if (match.hasMatch())
                lines.append(match.captured(1) + match.captured(2));
        }
        return lines;
    }

private:
    QTemporaryFile m_file;
    qint64 m_start = 0;
    int m_saved = -1;
};
