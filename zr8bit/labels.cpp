#include "labels.h"

#include "console.h"
#include "files.h"
#include "options.h"

#include <zr8bitkit/zrnumbers.h>

void addLabelsOption(CLI::App &command, QStringList &paths, const std::string &description)
{
    command
        .add_option_function<QStringList>(
            "--labels", [&paths](const QStringList &values) { paths = values; },
            description + "; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false);
}

void readLabels(ZR::ZR8BitLabels &labels, const QString &path)
{
    const int skippedBefore = labels.skippedLineCount();
    labels.read(readInput(path));
    const int skipped = labels.skippedLineCount() - skippedBefore;
    if (skipped > 0)
        printWarning(QStringLiteral("Lines of %1 that are no labels: %2").arg(inputName(path)).arg(skipped));
}

int addressOf(const std::string &option, const QString &value, const ZR::ZR8BitLabels &labels)
{
    constexpr int LastAddress = 0xFFFF;
    const std::optional<int> number = ZR::ZRNumbers::parse(value);
    const int address = number ? *number : labels.addressOf(value);
    if (address >= 0 && address <= LastAddress)
        return address;
    const QString range = QStringLiteral("an address from 0 to $FFFF");
    failOption(option, value,
               number ? range
                      : range + QStringLiteral(", written as 512, 0x200 or $200, nor a label of --labels"));
}
