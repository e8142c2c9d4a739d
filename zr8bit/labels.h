#pragma once

#include <zr8bitkit/zr8bitlabels.h>

#include <QtCore/QStringList>

#include <CLI/CLI.hpp>

#include <string>

// Labels of programs: options name the files that have them, and take labels in place of addresses.

/// Adds the option --labels, which may be repeated.
void addLabelsOption(CLI::App &command, QStringList &paths, const std::string &description);

/// Adds the labels of a file, and warns of lines that are none. Throws as readInput().
void readLabels(ZR::ZR8BitLabels &labels, const QString &path);

/// The address that an option's value is, as a number or as a label. Any other value is a wrong command line.
int addressOf(const std::string &option, const QString &value, const ZR::ZR8BitLabels &labels);
