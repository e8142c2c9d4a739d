#pragma once

#include <QtTest/QtTest>

/// Adds a row for each line of a text: its name, then its fields, with " | " between.
inline void addRows(const char *lines)
{
    QTest::addColumn<QStringList>("fields");
    for (const QString &line : QString::fromUtf8(lines).split(u'\n', Qt::SkipEmptyParts)) {
        QStringList fields = line.split(QStringLiteral(" | "));
        QTest::newRow(qPrintable(fields.takeFirst())) << fields;
    }
}

/// The bytes that stand in a field in hexadecimal.
inline QByteArray bytesOf(const QString &field)
{
    return QByteArray::fromHex(field.toLatin1());
}
