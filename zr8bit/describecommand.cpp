#include "commands.h"
#include "console.h"
#include "failure.h"
#include "options.h"

#include <zr8bitkit/zr8bitmachine.h>
#include <zr8bitkit/zr8bitprocz80.h>
#include <zr8bitkit/zrmapconfig.h>
#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitprocbase.h>
#include <zr8bitlib/zr8bitregister.h>

#include <algorithm>
#include <memory>

namespace {

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
        rows.append({QLatin1Char('$') + ZR::ZRNumbers::hexDigits(opcode, 2),
                     QString::number(command->length()), QString::number(command->cycleCnt()),
                     command->assembly(), plainText(command->descHint()),
                     plainText(command->desc()).replace(QLatin1Char('\n'), QStringLiteral("; "))});
    }
    printTable(rows);
}

struct Options
{
    QString type = QStringLiteral("MOS6510");
    ZR::ZR8BitMachine::Choice choice;
};

void describe(const Options &options)
{
    ZR::ZRMapConfig smallest{{QStringLiteral("Computer.RAMs"), QStringLiteral("MAIN")},
                             {QStringLiteral("RAM_MAIN.Size"), QStringLiteral("0")},
                             {QStringLiteral("Computer.Processors"), QStringLiteral("CPU")},
                             {QStringLiteral("PROC_CPU.Type"), options.type}};
    ZR::ZR8BitMachine machine;
    if (!machine.load(&smallest, options.choice))
        throw Failure(machine.lastErrorStr());

    printTexts(*machine.processor());
    const auto registers = machine.processor()->registers();
    for (ZR::ZR8BitRegister *reg : registers)
        printTexts(*reg);
    printInstructions(machine.processor()->commandList());
    if (const auto *z80 = qobject_cast<ZR::ZR8BitProcZ80 *>(machine.processor())) {
        for (const int prefix : {0xCB, 0xED, 0xDD, 0xFD, 0xDDCB, 0xFDCB}) {
            print(QStringLiteral("\nAfter the prefix $%1:\n").arg(QString::number(prefix, 16).toUpper()));
            printInstructions(z80->commandPage(prefix));
        }
    }
}

} // namespace

void addDescribeCommand(CLI::App &app)
{
    CLI::App *command = addCommand(
        app, "describe", "Print what a processor says of itself: texts, registers and instruction table.",
        {"zr8bit describe", "zr8bit describe MOS6510 --instructions all | grep LAX"});
    auto options = std::make_shared<Options>();
    command->add_option("TYPE", options->type, "Processor type; MOS6510 by default")
        ->type_name("MOS6510|Z80");
    addInstructionsOption(*command, options->choice.instructions,
                          "the MOS6510 has only ADC and TAX by default");
    command->callback([options] { describe(*options); });
}
