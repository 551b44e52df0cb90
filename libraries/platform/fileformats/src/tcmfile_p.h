#pragma once

#include <QtGlobal>

#include <cstddef>

// On-disk constants of the acquisition format; FORMAT.md is the prose version.
namespace TCMLayout {

constexpr char Magic[8] = {'\x89', 'T', 'C', 'M', '\r', '\n', '\x1a', '\n'};
constexpr quint16 VersionMajor = 1;
constexpr quint16 VersionMinor = 0;
constexpr quint32 HeaderSize = 128;

// Byte offsets of the header fields.
enum Field : std::size_t {
    FieldMagic = 0,
    FieldVersionMajor = 8,
    FieldVersionMinor = 10,
    FieldHeaderSize = 12,
    FieldFileSize = 16,
    FieldScanCount = 24,
    FieldSystem = 28,
    FieldPointCount = 32,
    FieldChannelCount = 40,
    FieldTransitionCount = 44,
    FieldMinKey = 48,
    FieldMaxKey = 52,
    FieldOffRtime = 56,
    FieldOffTic = 64,
    FieldOffIndex = 72,
    FieldOffKeys = 80,
    FieldOffAbundances = 88,
    FieldOffChannels = 96,
    FieldOffTransitions = 104,
    FieldOffStrings = 112,
    FieldStringsSize = 120,
    FieldHeaderCrc = 124
};

constexpr quint32 IndexEntrySize = 16; // u64 first point, u32 count, u32 reserved (0)
constexpr quint32 FixedStrings = 3;    // signal name, run name, run date
constexpr quint32 MaxStringsSize = 16u << 20;
constexpr quint32 MaxTransitions = 1u << 20;

quint32 crc32(const unsigned char* data, std::size_t size);

} // namespace TCMLayout
