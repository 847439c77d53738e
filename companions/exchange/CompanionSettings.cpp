#include "exchange/CompanionSettings.h"

#include "core/Numbers.h"
#include "core/SettingsStore.h"

#include <algorithm>

namespace velunta {

namespace {

Color colourOf(const SettingsStore& s, const char* key, Color fallback)
{
    bool ok = false;
    const qlonglong v = s.GetSetting(QString::fromLatin1(key)).trimmed().toLongLong(&ok);
    return ok && v >= 0 && v <= 0xFFFFFF ? Color(v) : fallback;
}

int thicknessOf(const SettingsStore& s, const char* key)
{
    const double v = Val(s.GetSetting(QString::fromLatin1(key)));
    return std::clamp(int(v), 1, kMaxThickness);
}

} // namespace

CompanionSettings ReadCompanionSettings()
{
    const SettingsStore store;
    CompanionSettings settings;
    settings.SelectedColor = colourOf(store, "SelectedColor", settings.SelectedColor);
    settings.SelectedBackColor = colourOf(store, "SelectedBackColor", settings.SelectedBackColor);
    settings.CircleThickness = thicknessOf(store, "CircleThickness");
    settings.LineThickness = thicknessOf(store, "LineThickness");
    return settings;
}

} // namespace velunta
