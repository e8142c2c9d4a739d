#include <zr8bitkit/zr8bitaddressspace.h>

#include "zrfailure_p.h"

#include <zr8bitkit/zrnumbers.h>
#include <zr8bitlib/zr8bitram.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitaddressspace";

constexpr int Size = 0x10000;
constexpr quint8 OpenBus = 0xFF; ///< what is read where nothing answers

using Handlers = std::pair<ZR8BitAddressSpace::ReadHandler, ZR8BitAddressSpace::WriteHandler>;
using SharedHandlers = std::shared_ptr<const Handlers>;

// The calls hold the handlers, which may unmap themselves. They stay out of the accesses, so that those to
// blocks need no preparation.

Q_NEVER_INLINE quint8 readFrom(const SharedHandlers &mapped, quint16 address)
{
    const SharedHandlers handlers = mapped; // NOLINT(performance-unnecessary-copy-initialization): see above
    return handlers->first(address);
}

Q_NEVER_INLINE void writeTo(const SharedHandlers &mapped, quint16 address, quint8 value)
{
    const SharedHandlers handlers = mapped; // NOLINT(performance-unnecessary-copy-initialization): see above
    handlers->second(address, value);
}

struct Port
{
    int port; ///< in the bits of the mask
    int mask;
    SharedHandlers handlers;
};

} // namespace

/// What answers at some addresses: a block, or handlers.
struct ZR8BitAddressSpace::Area
{
    ZR8BitROM *block = nullptr;
    ZR8BitRAM *ram = nullptr; ///< the same block, when it can be written
    int shift = 0;            ///< from an address to the position in the block
    SharedHandlers handlers = {};
};

/// Each address has the number of the area that answers a read, and of the one that answers a write. As areas
/// are only laid on top, and never taken away, what lies below need not be known.
struct ZR8BitAddressSpace::Private
{
    using AreaNumber = quint16;
    using Table = std::array<AreaNumber, Size>;

    static constexpr AreaNumber NoArea = 0;
    static constexpr std::size_t LargestCount = 0x10000;
    static constexpr std::size_t FewAreas = 64; ///< so many are kept without a look at which are in use

    Private() { clear(); }

    void clear()
    {
        readers.fill(NoArea);
        writers.fill(NoArea);
        areas.assign(1, Area());
        unused.clear();
        fullAt = FewAreas;
        ports.clear();
    }

    /// Returns NoArea when there are too many.
    AreaNumber add(Area area)
    {
        if (unused.empty() && areas.size() >= fullAt)
            findUnused();
        if (unused.empty()) {
            if (areas.size() >= LargestCount)
                return NoArea;
            areas.push_back(std::move(area));
            return static_cast<AreaNumber>(areas.size() - 1);
        }
        const AreaNumber number = unused.back();
        unused.pop_back();
        areas[number] = std::move(area);
        return number;
    }

    void findUnused()
    {
        std::vector<bool> isUsed(areas.size(), false);
        for (const Table *table : {&readers, &writers}) {
            for (const AreaNumber number : *table)
                isUsed[number] = true;
        }
        for (std::size_t number = NoArea + 1; number < areas.size(); ++number) {
            if (!isUsed[number]) {
                areas[number] = Area();
                unused.push_back(static_cast<AreaNumber>(number));
            }
        }
        // The look takes as long as thousands of accesses, so the next one comes after as many areas again.
        fullAt = qMax(FewAreas, 2 * (areas.size() - unused.size()));
    }

    /// Those of the uppermost port that has the one that is asked for.
    template <typename Handler>
    SharedHandlers handlersOf(int port, Handler Handlers::*handler) const
    {
        for (auto at = ports.rbegin(); at != ports.rend(); ++at) {
            if ((port & at->mask) == at->port && (*at->handlers).*handler)
                return at->handlers;
        }
        return nullptr;
    }

    Table readers;
    Table writers;
    std::vector<Area> areas; ///< that of NoArea is empty
    std::vector<AreaNumber> unused;
    std::size_t fullAt = FewAreas;
    std::vector<Port> ports; ///< the later, the more to the end
};

ZR8BitAddressSpace::ZR8BitAddressSpace(const QString &name)
    : ZRObject(name)
    , _d(std::make_unique<Private>())
{
}

ZR8BitAddressSpace::~ZR8BitAddressSpace() = default;

bool ZR8BitAddressSpace::mapMemory(int address, ZR8BitROM *block, int offset, int length)
{
    if (!block)
        return ZR_FAIL(QStringLiteral("There is no block of memory to map!"));
    const int size = block->size();
    if (offset < 0 || offset >= size || length < -1 || length > size - offset)
        return ZR_FAIL(
            QStringLiteral("The memory block%1 of %2 bytes has no %3 bytes from %4 on!")
                .arg(block->name().isEmpty() ? QString() : QStringLiteral(" '%1'").arg(block->name()),
                     QString::number(size), QString::number(length == -1 ? 1 : length),
                     QString::number(offset)));
    auto *const ram = dynamic_cast<ZR8BitRAM *>(block);
    const int shift = offset - qMax(0, address); // one below 0 is refused
    return _map(address, length == -1 ? size - offset : length, {block, ram, shift, nullptr}, true, ram);
}

bool ZR8BitAddressSpace::mapDevice(int address, int length, ReadHandler read, WriteHandler write)
{
    const bool reads = bool(read);
    const bool writes = bool(write);
    const auto handlers = std::make_shared<const Handlers>(std::move(read), std::move(write));
    return _map(address, length, {nullptr, nullptr, 0, handlers}, reads, writes);
}

bool ZR8BitAddressSpace::mapPort(int port, int mask, ReadHandler in, WriteHandler out)
{
    if (port < 0 || port >= Size || mask < 0 || mask >= Size)
        return ZR_FAIL(
            QStringLiteral("A port and its mask are 0 to 65535, not %1 and %2!").arg(port).arg(mask));
    // Those below that nobody reaches any more are forgotten.
    auto &ports = _d->ports;
    for (Port &below : ports) {
        if (below.mask == mask && below.port == (port & mask))
            below.handlers = std::make_shared<const Handlers>(in ? nullptr : below.handlers->first,
                                                              out ? nullptr : below.handlers->second);
    }
    const auto isEmpty = [](const Port &p) { return !p.handlers->first && !p.handlers->second; };
    ports.erase(std::remove_if(ports.begin(), ports.end(), isEmpty), ports.end());
    ports.push_back({port & mask, mask, std::make_shared<const Handlers>(std::move(in), std::move(out))});
    return true;
}

void ZR8BitAddressSpace::clear()
{
    _d->clear();
}

quint8 ZR8BitAddressSpace::read(quint16 address)
{
    const Area &area = _d->areas[_d->readers[address]];
    if (area.block)
        return static_cast<quint8>(area.block->byteValue(address + area.shift));
    return area.handlers ? readFrom(area.handlers, address) : OpenBus;
}

void ZR8BitAddressSpace::write(quint16 address, quint8 value)
{
    const Area &area = _d->areas[_d->writers[address]];
    if (area.ram)
        area.ram->setByteValue(static_cast<char>(value), address + area.shift);
    else if (area.handlers)
        writeTo(area.handlers, address, value);
}

quint8 ZR8BitAddressSpace::in(quint16 port)
{
    const SharedHandlers handlers = _d->handlersOf(port, &Handlers::first);
    return handlers ? handlers->first(port) : OpenBus;
}

void ZR8BitAddressSpace::out(quint16 port, quint8 value)
{
    if (const SharedHandlers handlers = _d->handlersOf(port, &Handlers::second))
        handlers->second(port, value);
}

quint8 ZR8BitAddressSpace::peek(quint16 address) const
{
    const Area &area = _d->areas[_d->readers[address]];
    return area.block ? static_cast<quint8>(area.block->byteValue(address + area.shift)) : OpenBus;
}

quint8 ZR8BitAddressSpace::peekRAM(quint16 address) const
{
    const Area &area = _d->areas[_d->writers[address]];
    return area.ram ? static_cast<quint8>(area.ram->byteValue(address + area.shift)) : OpenBus;
}

bool ZR8BitAddressSpace::isRAM(quint16 address) const
{
    return _d->areas[_d->writers[address]].ram;
}

bool ZR8BitAddressSpace::_map(int address, int length, Area area, bool reads, bool writes)
{
    if (length < 1)
        return ZR_FAIL(QStringLiteral("At least 1 byte can be mapped, not %1!").arg(length));
    if (address < 0 || length > Size - address)
        return ZR_FAIL(QStringLiteral("%1 bytes from %2 on do not fit into the 65536 addresses!")
                           .arg(length)
                           .arg(address));
    const Private::AreaNumber number = _d->add(std::move(area));
    if (number == Private::NoArea)
        return ZR_FAIL(QStringLiteral("There are too many areas in the address space!"));
    if (reads)
        std::fill_n(_d->readers.begin() + address, length, number);
    if (writes)
        std::fill_n(_d->writers.begin() + address, length, number);
    return true;
}

} // namespace ZR
