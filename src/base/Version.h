#pragma once

#include <QString>

namespace sendrel {

// The program's version and what it calls itself in the splash and about windows.
constexpr int kVersionMajor = 3;
constexpr int kVersionMinor = 3;
constexpr int kVersionRevision = 4;

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
