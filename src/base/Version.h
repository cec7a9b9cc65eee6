#pragma once

#include "base/VersionNumbers.h"

#include <QString>

namespace sendrel {

// The program's version and what it calls itself in the splash and about windows.
constexpr int kVersionMajor = SENDREL_VERSION_MAJOR;
constexpr int kVersionMinor = SENDREL_VERSION_MINOR;
constexpr int kVersionRevision = SENDREL_VERSION_PATCH;

inline const QString kProgramName = QStringLiteral("Sendrel");
inline const QString kProductDescription = QStringLiteral("Growth Model Output Processing System");

// "Version " + major + "." + minor in two digits + "." + revision in four: "Version 3.03.0004".
inline QString VersionText()
{
    return QStringLiteral("Version %1.%2.%3")
        .arg(kVersionMajor)
        .arg(kVersionMinor, 2, 10, QLatin1Char('0'))
        .arg(kVersionRevision, 4, 10, QLatin1Char('0'));
}

}  // namespace sendrel
