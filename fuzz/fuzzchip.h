#pragma once

// A complete processor beside its model: the same program, registers and interrupts, compared after each
// step.

#include "fuzzing.h"

#include <zr8bitkit/zr8bitbus.h>
#include <zr8bitkit/zr8bitchipiface.h>
#include <zr8bitlib/zr8bitprocessoriface.h>

#include <algorithm>
#include <array>

/// All addresses are RAM. Ports give what follows from their number, and what is written to them is summed
/// up.
struct FuzzBus : public ZR::ZR8BitBus
{
    quint8 read(quint16 address) override { return memory[address]; }
    void write(quint16 address, quint8 value) override { memory[address] = value; }
    quint8 in(quint16 port) override { return static_cast<quint8>(port * 167 + (port >> 8)); }
    void out(quint16 port, quint8 value) override { written = written * 31 + port * 256U + value; }

    std::array<uint8_t, 0x10000> memory{};
    quint64 written = 0;
};

/// A register: its id, where the model has it, and the bits that it can hold.
template <typename Model>
struct FuzzRegister
{
    QString id;
    int Model::*member;
    int bits;
};

/// Runs the programs that inputs give. One of the two chips is watched; from time to time the other takes
/// over.
template <typename Chip, typename Model>
class ChipFuzzer
{
public:
    ChipFuzzer(std::vector<FuzzRegister<Model>> registers, void (*prepare)(Chip &))
        : _registers(std::move(registers))
    {
        for (Chip &chip : _chips) {
            prepare(chip);
            LAW(chip.init());
            chip.setBus(&bus);
        }
        LAW(!_chips[1].commandList().isEmpty());
    }

    virtual ~ChipFuzzer() = default;

    void run(const unsigned char *bytes, size_t size)
    {
        FuzzedDataProvider input(bytes, size);
        start(input);
        std::array<int, 16> events{};
        for (int &event : events)
            event = input.ConsumeIntegralInRange(0, 2 * StepCount);
        fill(input);
        for (int i = 0; i < StepCount; ++i) {
            for (size_t kind = 0; kind < events.size(); ++kind) {
                if (events[kind] == i)
                    happen(static_cast<int>(kind));
            }
            step();
        }
        LAW(bus.memory == model.memory);
    }

    Model model;
    FuzzBus bus;

protected:
    virtual void setIRQ(Chip &chip, bool active) { chip.setIRQ(active); }

private:
    static constexpr int StepCount = 400;
    static constexpr quint64 WaitCycles = 100;

    void start(FuzzedDataProvider &input)
    {
        _chip = &_chips[input.ConsumeBool()];
        reset();
        model.irq = false;
        setIRQ(*_chip, false);
        model.cycles = _chip->cycles();
        for (const auto &[id, member, bits] : _registers) {
            model.*member = input.ConsumeIntegral<quint16>() & bits;
            LAW(_chip->setRegisterValue(id, model.*member));
        }
    }

    /// The memory is what is left of the input, over and over.
    void fill(FuzzedDataProvider &input)
    {
        auto program = input.ConsumeRemainingBytes<uint8_t>();
        program.push_back(0);
        for (size_t i = 0; i < model.memory.size(); ++i)
            model.memory[i] = program[i % program.size()];
        bus.memory = model.memory;
    }

    void reset()
    {
        _chip->reset();
        model.reset();
    }

    void happen(int kind)
    {
        Chip *const other = &_chips[_chip == &_chips[0]];
        switch (kind % 8) {
        case 0:
            reset();
            break;
        case 1:
        case 2:
            model.nmi = true;
            _chip->triggerNMI();
            break;
        case 3: // the other goes on
            LAW(other->restoreState(_chip->saveState()) && other->saveState() == _chip->saveState());
            _chip = other;
            break;
        case 4:
            if (_chip->isWaiting())
                wait();
            break;
        default:
            model.irq = !model.irq;
            setIRQ(*_chip, model.irq);
        }
    }

    void wait()
    {
        const quint64 end = _chip->cycles() + WaitCycles;
        const quint64 count = _chip->wait(WaitCycles);
        for (quint64 i = 0; i < count; ++i)
            model.step();
        LAW(_chip->cycles() == model.cycles && (_chip->cycles() >= end || count == 0));
    }

    void step()
    {
        LAW(_chip->acceptsIRQ() == model.acceptsIRQ());
        const std::vector<int> before = values();
        const int length = model.step();
        LAW(static_cast<ZR8BitProcessorIface *>(_chip)->step() == length);
        const bool isSame =
            _chip->cycles() == model.cycles && _chip->isJammed() == model.isJammed && hasSameValues();
        if (!isSame)
            tell(before);
        LAW(isSame);
        if (model.isJammed)
            reset();
    }

    std::vector<int> values() const
    {
        std::vector<int> values;
        for (const auto &[id, member, bits] : _registers)
            values.push_back(model.*member);
        return values;
    }

    bool hasSameValues() const
    {
        return std::all_of(_registers.begin(), _registers.end(), [this](const auto &reg) {
            return _chip->registerValue(reg.id) == model.*reg.member;
        });
    }

    /// Prints what a step has done that differs.
    void tell(const std::vector<int> &before) const
    {
        for (size_t i = 0; i < before.size(); ++i) {
            const auto &[id, member, bits] = _registers[i];
            qWarning("%4s was %04x, is %04x, should be %04x", qPrintable(id), before[i],
                     _chip->registerValue(id), model.*member);
        }
        qWarning("cycles are %llu, should be %llu", _chip->cycles(), static_cast<quint64>(model.cycles));
    }

    std::vector<FuzzRegister<Model>> _registers;
    std::array<Chip, 2> _chips;
    Chip *_chip = nullptr;
};
