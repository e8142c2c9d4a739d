#ifndef ZR8BITPROCESSORIFACE_H
#define ZR8BITPROCESSORIFACE_H

#include <zr8bitlib/zr8bitlib_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>

class ZRConfigIface;

namespace ZR {
class ZR8BitProcCommand;
class ZR8BitRAM;
class ZR8BitRegister;
} // namespace ZR

/// A processor, whatever its model. Hosts hold processors by this type.
///
/// Order of use: construct, readFromConfig(), setMainMemory() and init(), then step() as often as wished. To
/// be used from one thread at a time; handlers of instructions run on that thread.
///
/// What runs an instruction returns 0 when nothing ran because the processor is paused or has a hardware
/// issue, the count of bytes consumed when it ran, and -1 when there is none to run. A failure sets a
/// hardware issue, so that every later call returns 0 until resetHardwareIssue(). That includes a failure
/// within the instruction, which counts as run all the same.
class ZR8BITLIB_EXPORT ZR8BitProcessorIface
{
public:
    virtual ~ZR8BitProcessorIface();

    /// Builds registers and instruction table. To be called once; false is a failure.
    virtual bool init() = 0;
    /// Reads the processor's settings. config is borrowed for the call; null is a failure.
    virtual bool readFromConfig(const QString &prefix, ZRConfigIface *config) = 0;

    /// Sets the memory that instructions and operands are read from, unchecked. It stays its owner's and must
    /// outlive its use here; null for none.
    virtual void setMainMemory(ZR::ZR8BitRAM *memory) = 0;
    /// The memory that was set, null at first.
    virtual ZR::ZR8BitRAM *mainMemory() = 0;

    /// Makes the processor run nothing until resume().
    virtual void pause() = 0;
    /// Ends a pause. A hardware issue stays.
    virtual void resume() = 0;

    /// Whether a failure has stopped the processor.
    virtual bool hardwareIssue() = 0;
    /// The text of the current hardware issue, empty when there is none.
    virtual QString hardwareIssueMsg() = 0;
    /// Lets the processor run again after a failure. A pause stays.
    virtual void resetHardwareIssue() = 0;

    /// The registers by id, empty before init(). The registers stay the processor's.
    virtual QMap<QString, ZR::ZR8BitRegister *> registers() = 0;
    /// The rows of the instruction table by opcode, empty before init(). The rows stay the processor's.
    virtual QHash<unsigned char, ZR::ZR8BitProcCommand *> commandList() = 0;

    /// Runs the one instruction at data: the opcode and its operand bytes, which must all be there. size is
    /// handed on but not compared with what the instruction needs. No program counter moves. Null data is a
    /// failure.
    virtual int execute(const char *data, const int &size) = 0;
    /// The same from a byte array.
    virtual int execute(const QByteArray &data) = 0;

protected:
    /// Runs the instruction at the program counter and moves the counter behind it.
    virtual int execute() = 0;

public:
    /// Runs the instruction at the program counter and moves the counter behind it. Without a main memory it
    /// is a failure.
    int step() { return execute(); }
};

Q_DECLARE_INTERFACE(ZR8BitProcessorIface, "ZR8BitProcessorIface")

#endif
