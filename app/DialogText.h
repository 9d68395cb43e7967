#pragma once

#include <QLineEdit>

#include <string>

/// What a text field holds, UTF-8; full-width digits, as Japanese input methods give them, count as
/// digits, and a comma as the decimal point that it is in many countries.
inline std::string FieldText(const QLineEdit& field) {
    return field.text().normalized(QString::NormalizationForm_KC).replace(u',', u'.').toStdString();
}
