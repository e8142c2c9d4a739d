#include "zr8bitchipcore_p.h"

#include <zr8bitlib/zr8bitregister.h>

#include <QtCore/QtEndian>

#include <algorithm>
#include <cstring>
#include <typeinfo>
#include <utility>

namespace ZR {

/// The processor reaches the bytes of its registers without the lock: registers are for one thread.
class ZR8BitChipCore::Block : public ZR8BitRAM
{
public:
    Block() { setContent(QByteArray(BlockSize, '\0')); }

    quint8 *bytes() { return reinterpret_cast<quint8 *>(_content.data()); }
};

/// Remembers that somebody has connected to it: most of the time goes into signals that nobody hears.
class ZR8BitChipCore::Additional final : public ZR8BitRegister
{
public:
    Additional(quint64 &heard, quint64 view)
        : _heard(heard)
        , _view(view)
    {
    }

protected:
    void connectNotify(const QMetaMethod &) override { _heard |= _view; }

private:
    quint64 &_heard;
    const quint64 _view;
};

ZR8BitChipCore::ZR8BitChipCore(ZR8BitRAM *const &mainMemory, std::vector<View> views)
    : mainMemory(mainMemory)
    , views(std::move(views))
    , _block(std::make_unique<Block>())
{
    registers = _block->bytes();
    for (std::size_t i = 0; i < this->views.size(); ++i) {
        const View &view = this->views[i];
        for (int byte = 0; byte < view.bytes; ++byte)
            _viewsOf[static_cast<std::size_t>(view.position) + static_cast<std::size_t>(byte)] |= quint64(1)
                                                                                                  << i;
    }
    addPart("IRQ", irq);
    addPart("NMI", nmi);
    addPart("cycles", cycles);
}

ZR8BitChipCore::~ZR8BitChipCore() = default;

bool ZR8BitChipCore::bindRegisters(QMap<QString, ZR8BitRegister *> &registersById)
{
    std::memset(registers, 0, BlockSize);
    _registers.clear();
    for (std::size_t i = 0; i < views.size(); ++i) {
        const View &view = views[i];
        const QString id = QString::fromLatin1(view.id);
        ZR8BitRegister *reg = registersById.value(id);
        if (!reg) {
            reg = _additional.emplace_back(std::make_unique<Additional>(_heard, quint64(1) << i)).get();
            registersById.insert(id, reg);
        }
        if (typeid(*reg) != typeid(Additional))
            _heard |= quint64(1) << i;
        const ZR8BitRegTypes type = view.bytes == 2 ? ZR8BitRegType16Bit : ZR8BitRegType8Bit;
        if (!reg->init(id, type, view.position, _block.get()))
            return false;
        _registers.push_back(reg);
    }
    return true;
}

const ZR8BitChipCore::View *ZR8BitChipCore::view(const QString &id) const
{
    for (const View &view : views) {
        if (id == QLatin1String(view.id))
            return &view;
    }
    return nullptr;
}

int ZR8BitChipCore::value(const View &view) const
{
    const quint8 *bytes = registers + view.position;
    return view.bytes == 2 ? qFromLittleEndian<quint16>(bytes) : bytes[0];
}

void ZR8BitChipCore::setValue(const View &view, int value) const
{
    if (view.bytes == 2)
        qToLittleEndian(static_cast<quint16>(value), registers + view.position);
    else
        registers[view.position] = static_cast<quint8>(value);
}

void ZR8BitChipCore::movePC(int address) const
{
    setValue(views.back(), address);
    _announce(views.size() - 1);
}

ZR8BitChipCore::Snapshot ZR8BitChipCore::snapshot() const
{
    Snapshot bytes;
    std::memcpy(bytes.data(), registers, bytes.size());
    return bytes;
}

void ZR8BitChipCore::announceSince(const Snapshot &before) const
{
    if (!watched || _heard == 0)
        return;
    quint64 changed = 0;              // views, a bit for each
    constexpr std::size_t AtOnce = 8; // bytes of which most have not changed
    static_assert(BlockSize % AtOnce == 0);
    for (std::size_t place = 0; place < BlockSize; place += AtOnce) {
        if (std::memcmp(registers + place, before.data() + place, AtOnce) == 0)
            continue;
        for (std::size_t i = place; i < place + AtOnce; ++i) {
            if (registers[i] != before[i])
                changed |= _viewsOf[i];
        }
    }
    changed &= _heard;
    for (std::size_t view = 0; changed != 0; ++view, changed >>= 1) {
        if (changed & 1)
            _announce(view);
    }
}

void ZR8BitChipCore::tellInterrupt(ZR8BitChipIface::Interrupt interrupt) const
{
    // A copy, since an observer may set another one.
    if (const ZR8BitChipIface::InterruptObserver told = observer)
        told(interrupt, static_cast<quint16>(programCounter()));
}

QList<ZR8BitChipIface::Field> ZR8BitChipCore::stateFields() const
{
    QList<ZR8BitChipIface::Field> fields;
    for (int place = 0; place < _usedBytes();) {
        const auto view =
            std::find_if(views.begin(), views.end(), [place](const View &v) { return v.position == place; });
        fields += {QString::fromLatin1(view->id), view->bytes};
        place += view->bytes;
    }
    for (const Part &part : parts)
        fields += {QString::fromLatin1(part.name), part.bytes};
    return fields;
}

QByteArray ZR8BitChipCore::saveState() const
{
    QByteArray state(reinterpret_cast<const char *>(registers), _usedBytes());
    for (const Part &part : parts) {
        quint64 value = part.get();
        for (int i = 0; i < part.bytes; ++i, value >>= 8)
            state += static_cast<char>(value);
    }
    return state;
}

bool ZR8BitChipCore::restoreState(const QByteArray &state)
{
    std::vector<quint64> values;
    qsizetype place = _usedBytes();
    for (const Part &part : parts) {
        if (place + part.bytes > state.size())
            return false;
        quint64 value = 0;
        for (int i = part.bytes; i-- > 0;)
            value = value << 8 | static_cast<quint8>(state[place + i]);
        if (value > part.largest)
            return false;
        values.push_back(value);
        place += part.bytes;
    }
    if (place != state.size())
        return false;

    std::memcpy(registers, state.constData(), static_cast<std::size_t>(_usedBytes()));
    for (std::size_t i = 0; i < parts.size(); ++i)
        parts[i].set(values[i]);
    return true;
}

void ZR8BitChipCore::_announce(std::size_t view) const
{
    if (watched && view < _registers.size() && (_heard >> view & 1))
        Q_EMIT _registers[view]->onValueChanged();
}

/// The views cover the block from its beginning without a gap.
int ZR8BitChipCore::_usedBytes() const
{
    int bytes = 0;
    for (const View &view : views)
        bytes = qMax(bytes, view.position + view.bytes);
    return bytes;
}

} // namespace ZR
