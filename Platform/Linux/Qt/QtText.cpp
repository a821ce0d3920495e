#include "Platform/Linux/Qt/QtText.h"

#include <QString>

namespace tarvex {

std::string QtText::upperCased(const std::string& text) {
    return QString::fromStdString(text).toUpper().toStdString();
}

} // namespace tarvex
