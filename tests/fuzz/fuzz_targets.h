// The parsers of "fuzz_device", by name. Each takes one input and ends the process where a promise is broken.

#pragma once

#include <QByteArray>
#include <QString>

void fuzzConfiguration(const QByteArray &input);
void fuzzControlConnection(const QByteArray &input);
void fuzzDeviceRecord(const QByteArray &input);
void fuzzLanguageTable(const QByteArray &input);
void fuzzLocaleAlias(const QByteArray &input);
void fuzzProfile(const QByteArray &input);
void fuzzRequestLine(const QByteArray &input);
void fuzzTheme(const QByteArray &input);

/// A file of these bytes, in memory, under a path that stays the same.
QString inputFile(const QByteArray &contents);

/// One line that says which file is meant and steers no terminal.
void requireSentence(const QString &error, const QString &path);
