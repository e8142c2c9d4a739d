#pragma once

#include "options.h"

#include <QtCore/QHash>
#include <QtCore/QList>

// The options of the commands that run programs, as they stand on the command line.

// An address is a text until the labels have been read: a number or a label.

/// A register and its value.
struct RegisterOption
{
    QString id;
    int value = 0;
};

/// A part of the memory, and the file that it is for, if any.
struct MemoryPart
{
    QString file;
    QString address;
    int length = 0;
};

/// Where a program writes to: an address or a port.
struct OutputPlace
{
    QString address;
    bool isPort = false;
};

/// What the commands share.
struct RunOptions
{
    QStringList loads; ///< FILE or FILE@ADDRESS, where a FILE may have an @ in its name
    QList<RegisterOption> registers;
    QList<MemoryPart> dumps;
    QList<MemoryPart> saves;
    QStringList until;
    std::optional<QString> start;
    std::optional<MemoryPart> watch;
    std::optional<OutputPlace> output;
    std::optional<OutputPlace> exit;
    std::optional<int> steps;
    std::optional<int> cycles;
    std::optional<int> irqEvery;
    std::optional<int> history;
    QStringList labels;
    QString loadState;
    QString saveState;
    bool reset = false;
    bool trace = false;
    bool log = false;
};

/// Adds them. options must live until the command has run.
void addRunOptions(CLI::App &command, RunOptions &options);

/// Ends parsing when a file that an option names is standard output, where the report of the run goes.
void refuseStandardOutput(const std::string &option, const QString &path);
