#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <vector>

/**
 * The products that the simulated radar can write, one row each: everything that tells them apart but the numbers
 * themselves.
 *
 * Thread: constant, any thread.
 */
struct TORVProductKind
{
    enum Id : int
    {
        Z,
        V,
        W,
        R,
        MAX,
        VIL,
        SRI,
        PPI,
        CAPPI
    };

    Id id;
    const char* name;      ///< as the user asks for it
    const char* extension; ///< of its files, without a dot
    bool isVolume;         ///< else flat
    bool isDefault;        ///< written unless the user chooses
    uint16_t productType;
    uint16_t narrowType; ///< data type in one byte an item
    uint16_t wideType;   ///< in two bytes; the same where there is only one form

    static const std::vector<TORVProductKind>& all();

    /// Null where there is none.
    static const TORVProductKind* find(const QString& name);
};
