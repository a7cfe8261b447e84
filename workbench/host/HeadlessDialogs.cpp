#include "workbench/host/HeadlessDialogs.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace wb {

namespace {

constexpr int SignificantDigits = 15;
constexpr std::string_view Blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

template <typename... Args> std::string printed(const char* format, Args... args) {
    const int length = std::snprintf(nullptr, 0, format, args...);
    std::string text(static_cast<std::size_t>(length), '\0');
    std::snprintf(text.data(), text.size() + 1, format, args...);
    return text;
}

// At most 15 significant digits, no trailing zeros; exponent form below 1e-4 and from 1e15.
std::string generalText(double value) {
    return printed("%.*g", SignificantDigits, value);
}

std::string doubleText(double value, int digits) {
    if (!std::isfinite(value))
        return "--";
    if (value == 0)
        return "0"; // also for -0
    const double magnitude = std::fabs(value);
    if (digits <= 0 || magnitude >= 1e15)
        return generalText(value);
    // Decimals beyond the 15th significant digit would show noise, not the value.
    const int leading = static_cast<int>(std::floor(std::log10(magnitude)));
    const int decimals = std::min(digits, SignificantDigits - 1 - leading);
    std::string text = printed("%.*f", decimals, value);
    if (text.find_first_of("123456789") == std::string::npos)
        return generalText(value); // would read as 0
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text;
}

// from_chars takes a minus sign but no plus: drops a plus, unless a minus follows it.
bool dropPlus(std::string_view& text) {
    if (text.empty() || text.front() != '+')
        return true;
    text.remove_prefix(1);
    return text.empty() || text.front() != '-';
}

template <typename Number> std::optional<Number> parsed(std::string_view text) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

std::optional<double> parseDouble(std::string_view text) {
    // A decimal comma becomes a point. Text that then holds two points ("1,234.5", "1,2,3")
    // is rejected by from_chars: a thousands separator is never guessed.
    std::string number(trimmed(text));
    std::replace(number.begin(), number.end(), ',', '.');
    std::string_view digits = number;
    if (!dropPlus(digits))
        return std::nullopt;
    const auto value = parsed<double>(digits);
    if (!value || !std::isfinite(*value))
        return std::nullopt;
    return value;
}

std::optional<short> parseShort(std::string_view text) {
    text = trimmed(text);
    if (!dropPlus(text))
        return std::nullopt;
    const auto value = parsed<int>(text);
    if (!value || *value < -32768 || *value > 32767)
        return std::nullopt;
    return static_cast<short>(*value);
}

// Bytes of `text` that fit into `limit` without cutting a UTF-8 character. Bytes that are
// not UTF-8 are taken one by one.
std::size_t utf8Prefix(const std::string& text, std::size_t limit) {
    if (text.size() <= limit)
        return text.size();
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const auto continuation = [&](std::size_t at) { return (byte(at) & 0xC0) == 0x80; };
    std::size_t start = limit;
    while (start > 0 && limit - start < 3 && continuation(start))
        --start;
    const unsigned char lead = byte(start);
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    return start < limit && start + length > limit ? start : limit;
}

const char* orEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

} // namespace

HeadlessDialogs::HeadlessDialogs(KeywordStore& keywords, const DataFile* file)
    : m_keywords(keywords), m_file(file) {}

void HeadlessDialogs::presetVariableChoice(std::vector<short> first, std::vector<short> second) {
    m_choices.push_back(VariableChoice{std::move(first), std::move(second)});
}

void HeadlessDialogs::presetVariableCancel() {
    m_choices.push_back(std::nullopt);
}

bool HeadlessDialogs::hasControl(HWND dialog, int id) {
    return m_model.controlHandle(dialog, id) != nullptr;
}

HWND HeadlessDialogs::GetDlgItem(HWND dialog, int id) {
    return m_model.controlHandle(dialog, id);
}

int HeadlessDialogs::EnableWindow(HWND control, int enable) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return 0;
    const bool wasDisabled = !m_model.isEnabled(ref->dialog, ref->id);
    m_model.setEnabled(ref->dialog, ref->id, enable != 0);
    return wasDisabled ? 1 : 0;
}

int HeadlessDialogs::ShowWindow(HWND control, int show) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return 0;
    const bool wasShown = m_model.isShown(ref->dialog, ref->id);
    m_model.setShown(ref->dialog, ref->id, show != 0);
    return wasShown ? 1 : 0;
}

int HeadlessDialogs::CheckDlgButton(HWND dialog, int id, unsigned check) {
    if (!hasControl(dialog, id))
        return 0;
    m_model.setChecked(dialog, id, check != 0);
    return 1;
}

unsigned HeadlessDialogs::IsDlgButtonChecked(HWND dialog, int id) {
    return hasControl(dialog, id) && m_model.isChecked(dialog, id) ? 1 : 0;
}

long HeadlessDialogs::SendMessageA(HWND control, unsigned message, unsigned long wParam, long) {
    if (message != LB_GETCURSEL && message != LB_SETCURSEL)
        return 0;
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return LB_ERR;
    if (message == LB_GETCURSEL) {
        const int row = m_model.selection(ref->dialog, ref->id);
        return row < 0 ? LB_ERR : row;
    }
    const int row = static_cast<int>(wParam);
    if (!m_model.select(ref->dialog, ref->id, row))
        return LB_ERR;
    return row < 0 ? LB_ERR : row;
}

int HeadlessDialogs::SetDlgItemTextA(HWND dialog, int id, const char* text) {
    if (!hasControl(dialog, id))
        return 0;
    m_model.setText(dialog, id, orEmpty(text));
    return 1;
}

int HeadlessDialogs::GetDlgItemTextA(HWND dialog, int id, char* buffer, int size) {
    if (buffer == nullptr || size <= 0)
        return 0;
    buffer[0] = '\0';
    if (!hasControl(dialog, id))
        return 0;
    const std::string& text = m_model.text(dialog, id);
    const std::size_t length = utf8Prefix(text, static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

int HeadlessDialogs::SetDlgItemInt(HWND dialog, int id, unsigned value, int isSigned) {
    if (!hasControl(dialog, id))
        return 0;
    m_model.setText(dialog, id,
                    isSigned != 0 ? std::to_string(static_cast<int>(value))
                                  : std::to_string(value));
    return 1;
}

int HeadlessDialogs::GetDlgItemInteger(HWND dialog, int id, short* value) {
    if (value == nullptr || !hasControl(dialog, id))
        return 0;
    const auto number = parseShort(m_model.text(dialog, id));
    if (!number)
        return 0;
    *value = *number;
    return 1;
}

int HeadlessDialogs::SetDlgItemDouble(HWND dialog, int id, double value, unsigned char,
                                      int digits) {
    if (!hasControl(dialog, id))
        return 0;
    m_model.setText(dialog, id, doubleText(value, digits));
    return 1;
}

int HeadlessDialogs::GetDlgItemDouble(HWND dialog, int id, double* value) {
    if (value == nullptr || !hasControl(dialog, id))
        return 0;
    const auto number = parseDouble(m_model.text(dialog, id));
    if (!number)
        return 0;
    *value = *number;
    return 1;
}

void HeadlessDialogs::InitStaticListBox(HWND control, const char* const* rows) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return;
    std::vector<std::string> texts;
    for (const char* const* row = rows; row != nullptr && *row != nullptr; ++row)
        texts.emplace_back(*row);
    m_model.setRows(ref->dialog, ref->id, std::move(texts));
}

void HeadlessDialogs::WriteVarListToCaption(HWND dialog, int id, int count, const short* vars) {
    if (!hasControl(dialog, id))
        return;
    std::string caption;
    for (int i = 0; vars != nullptr && m_file != nullptr && i < count; ++i) {
        if (vars[i] < 1 || vars[i] > m_file->variableCount())
            continue;
        if (!caption.empty())
            caption += ' ';
        caption += m_file->variable(vars[i]).name;
    }
    m_model.setText(dialog, id, std::move(caption));
}

void HeadlessDialogs::checkChoice(const VariableDialogCall& call,
                                  const VariableChoice& choice) const {
    const std::string where = "variable dialog \"" + call.title + "\": ";
    const int variables = m_file == nullptr ? 0 : m_file->variableCount();
    const auto checkList = [&](const std::vector<short>& list, const char* name, int min, int max) {
        const int size = static_cast<int>(list.size());
        if (size < min || size > max)
            throw std::invalid_argument(where + "the " + name + " list has " +
                                        std::to_string(size) + " variables; the dialog takes " +
                                        std::to_string(min) + " to " + std::to_string(max));
        std::set<short> seen;
        for (const short variable : list) {
            const std::string which =
                "variable " + std::to_string(variable) + " of the " + name + " list ";
            if (variable < 1 || variable > variables)
                throw std::invalid_argument(where + which + "is not a variable of the file (1 to " +
                                            std::to_string(variables) + ")");
            if (!call.choices.empty() &&
                std::find(call.choices.begin(), call.choices.end(), variable) == call.choices.end())
                throw std::invalid_argument(where + which + "is not among the choices");
            if (!seen.insert(variable).second)
                throw std::invalid_argument(where + which + "stands in it twice");
        }
    };
    checkList(choice.first, "first", call.min1, call.max1);
    checkList(choice.second, "second", call.min2, call.max2);
    const std::size_t both = choice.first.size() + choice.second.size();
    if (both > static_cast<std::size_t>(std::max(call.total, 0)))
        throw std::invalid_argument(where + std::to_string(both) +
                                    " variables in both lists; the dialog takes at most " +
                                    std::to_string(call.total));
}

int HeadlessDialogs::DoubleVarListDialog(HWND parent, unsigned short mode, const char* title,
                                         const short* choices, int min1, int max1, int min2,
                                         int max2, int total, short* first, short* firstCount,
                                         short* second, short* secondCount, const char* caption1,
                                         const char* caption2, unsigned short flag) {
    VariableDialogCall call{parent,
                            mode,
                            orEmpty(title),
                            {},
                            min1,
                            max1,
                            min2,
                            max2,
                            total,
                            orEmpty(caption1),
                            orEmpty(caption2),
                            flag};
    for (const short* choice = choices; choice != nullptr && *choice != 0; ++choice)
        call.choices.push_back(*choice);
    m_calls.push_back(std::move(call));

    if (m_choices.empty())
        return 0;
    const std::optional<VariableChoice> answer = std::move(m_choices.front());
    m_choices.pop_front();
    if (!answer)
        return 0;
    checkChoice(m_calls.back(), *answer);
    if (first == nullptr || firstCount == nullptr || second == nullptr || secondCount == nullptr)
        throw std::invalid_argument("DoubleVarListDialog: a list or count to write is null");
    std::copy(answer->first.begin(), answer->first.end(), first);
    *firstCount = static_cast<short>(answer->first.size());
    std::copy(answer->second.begin(), answer->second.end(), second);
    *secondCount = static_cast<short>(answer->second.size());
    return 1;
}

int HeadlessDialogs::GetInitKeyword(int section, const char* keyword, int*, int* second) {
    if (keyword == nullptr || second == nullptr)
        return 0;
    const std::optional<int> value = m_keywords.get(section, keyword);
    if (!value)
        return 0;
    *second = *value;
    return 1;
}

int HeadlessDialogs::PutInitKeyword(int section, const char* keyword, int*, int* second) {
    if (keyword == nullptr || second == nullptr)
        return 0;
    return m_keywords.put(section, keyword, *second) ? 1 : 0;
}

} // namespace wb
