#ifndef ZR8BITPROCBASE_H
#define ZR8BITPROCBASE_H

#include <zr8bitlib/zr8bitproccommand.h>
#include <zr8bitlib/zr8bitprocessoriface.h>
#include <zrbaselib/zrobject.h>

namespace ZR {

/// What all processor models share: main memory, registers, instruction table, pause and hardware issue, and
/// the step that runs one instruction from a buffer.
///
/// A model derives from it, calls init() of this class first in its own, fills _registers and _commands, and
/// implements the protected execute() without arguments.
class ZR8BITLIB_EXPORT ZR8BitProcBase : public QObject, public ZR8BitProcessorIface, public ZRObject
{
    Q_OBJECT
    Q_INTERFACES(ZR8BitProcessorIface)

public:
    /// Without registers and instructions, which a model adds in its init().
    explicit ZR8BitProcBase(const QString &name = QString(), QObject *parent = nullptr);
    ~ZR8BitProcBase() override;

    /// "ZR8BitProcBase".
    static const QString className();

    /// Returns true and does nothing else.
    bool init() override;
    /// Reads nothing: returns whether there is a config, and reports when there is none.
    bool readFromConfig(const QString &prefix, ZRConfigIface *config) override;
    void setMainMemory(ZR8BitRAM *memory) override;
    ZR8BitRAM *mainMemory() override;
    void pause() override;
    void resume() override;
    bool hardwareIssue() override;
    QString hardwareIssueMsg() override;
    void resetHardwareIssue() override;
    QMap<QString, ZR8BitRegister *> registers() override;
    QHash<unsigned char, ZR8BitProcCommand *> commandList() override;
    int execute(const char *data, const int &size) override;
    int execute(const QByteArray &data) override;

protected:
    int execute() override = 0;

    /// Stops the processor with the text of a failure, which replaces that of an earlier one.
    void _setHardwareIssue(const QString &message);

    ZR8BitRAM *_mainMemory = nullptr;           ///< not owned
    QMap<QString, ZR8BitRegister *> _registers; ///< members of the model, by id
    ZR8BitProcCommands _commands;               ///< the instruction table
    bool _paused = false;                       ///< set by pause(), cleared by resume()
    bool _hardwareIssue = false;                ///< whether a failure has stopped the processor
    QString _hardwareIssueMsg;                  ///< empty when there is no hardware issue
};

} // namespace ZR

#endif
