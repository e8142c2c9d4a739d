#include "commands.h"
#include "console.h"
#include "failure.h"
#include "machine.h"
#include "numbers.h"
#include "options.h"

#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitprocbase.h>
#include <zr8bitlib/zr8bitregister.h>
#include <zrbaselib/zrconfigiface.h>

#include <algorithm>
#include <memory>

namespace {

/// The settings of the smallest machine with a processor of one type.
class ProcessorConfig : public ZRConfigIface
{
public:
    explicit ProcessorConfig(const QString &type)
        : _type(type)
    {
    }

    QString stringValue(const QString &key, const QString &defaultValue) override
    {
        return key == QLatin1String("PROC_CPU.Type") ? _type : defaultValue;
    }

    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override
    {
        if (key == QLatin1String("Computer.RAMs"))
            return {QStringLiteral("MAIN")};
        if (key == QLatin1String("Computer.Processors"))
            return {QStringLiteral("CPU")};
        return defaultValue;
    }

    int intValue(const QString &key, int defaultValue) override
    {
        return key == QLatin1String("RAM_MAIN.Size") ? 0 : defaultValue;
    }

private:
    QString _type;
};

/// The text without what it has of HTML: line breaks, and tabs that count as spaces.
QString plainText(QString text)
{
    return text.replace(QLatin1String("<br>"), QLatin1String("\n")).replace(u'\t', u' ');
}

void printTexts(ZR::ZRObject &object)
{
    const QString title = plainText(object.descHint());
    print(title + QLatin1Char('\n') + QString(title.size(), QLatin1Char('-')) + QLatin1Char('\n') +
          plainText(object.desc()) + QStringLiteral("\n\n"));
}

/// Prints rows of equal length with each column as wide as its widest cell.
void printTable(const QList<QStringList> &rows)
{
    for (const QStringList &row : rows) {
        QString line;
        for (qsizetype column = 0; column < row.size(); ++column) {
            qsizetype width = 0;
            for (const QStringList &other : rows)
                width = std::max(width, other.at(column).size());
            line += row.at(column).leftJustified(width + 2);
        }
        print(line.trimmed() + QLatin1Char('\n'));
    }
}

void printInstructions(const QHash<unsigned char, ZR::ZR8BitProcCommand *> &commands)
{
    QList<unsigned char> opcodes = commands.keys();
    std::sort(opcodes.begin(), opcodes.end());
    QList<QStringList> rows{{QStringLiteral("Opcode"), QStringLiteral("Bytes"), QStringLiteral("Cycles"),
                             QStringLiteral("Mnemonic"), QStringLiteral("Title"), QStringLiteral("Text")}};
    for (const unsigned char opcode : opcodes) {
        ZR::ZR8BitProcCommand *command = commands.value(opcode);
        rows.append({QLatin1Char('$') + hexDigits(opcode, 2), QString::number(command->length()),
                     QString::number(command->cycleCnt()), command->assembly(),
                     plainText(command->descHint()),
                     plainText(command->desc()).replace(QLatin1Char('\n'), QStringLiteral("; "))});
    }
    printTable(rows);
}

void describe(const QString &type)
{
    ProcessorConfig config(type);
    ZR::ZR8BitComputer computer;
    if (!computer.readFromConfig(QString(), &config))
        throw Failure(computer.lastErrorStr());
    ZR::ZR8BitProcBase *processor = processorBase(computer.processors().value(QStringLiteral("CPU")));
    if (!processor->init())
        throw Failure(processor->lastErrorStr());

    printTexts(*processor);
    const auto registers = processor->registers();
    for (ZR::ZR8BitRegister *reg : registers)
        printTexts(*reg);
    printInstructions(processor->commandList());
}

} // namespace

void addDescribeCommand(CLI::App &app)
{
    CLI::App *command = addCommand(app, "describe",
                                   "Print what a processor says of itself: texts, registers "
                                   "and instruction table.",
                                   {"zr8bit describe", "zr8bit describe MOS6510 | grep ADC"});
    auto type = std::make_shared<QString>(QStringLiteral("MOS6510"));
    command->add_option("TYPE", *type, "Processor type; MOS6510 by default");
    command->callback([type] { describe(*type); });
}
