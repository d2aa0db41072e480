// Text between the program and Qt: both are UTF-16, so it only changes its container.
#pragma once

#include <QString>

#include "storage/text.h"

namespace torvane {

inline QString ToQString(TextView text) {
  return QStringView(text.data(), static_cast<qsizetype>(text.size())).toString();
}

inline Text FromQString(const QString& text) {
  return text.toStdU16String();
}

/// A caption without access keys, where & stands for itself.
inline QString CaptionText(TextView caption) {
  return ToQString(caption).replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace torvane
