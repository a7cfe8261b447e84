#include "workbench/dialogs/DialogHost.h"

#include "workbench/data/VariableList.h"
#include "workbench/dialogs/EditNumbers.h"
#include "workbench/text/Utf8.h"

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

const char* orEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

} // namespace

DialogHost::DialogHost(DialogFrontEnd& frontEnd, KeywordStore& keywords, const DataFile* file)
    : m_frontEnd(frontEnd), m_keywords(keywords), m_file(file) {}

bool DialogHost::hasControl(HWND dialog, int id) {
    return m_model.controlHandle(dialog, id) != nullptr;
}

HWND DialogHost::GetDlgItem(HWND dialog, int id) {
    return m_model.controlHandle(dialog, id);
}

int DialogHost::EnableWindow(HWND control, int enable) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return 0;
    const bool wasDisabled = !m_model.isEnabled(ref->dialog, ref->id);
    m_model.setEnabled(ref->dialog, ref->id, enable != 0);
    return wasDisabled ? 1 : 0;
}

int DialogHost::ShowWindow(HWND control, int show) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return 0;
    const bool wasShown = m_model.isShown(ref->dialog, ref->id);
    m_model.setShown(ref->dialog, ref->id, show != 0);
    return wasShown ? 1 : 0;
}

int DialogHost::CheckDlgButton(HWND dialog, int id, unsigned check) {
    if (!hasControl(dialog, id))
        return 0;
    m_model.setChecked(dialog, id, check != 0);
    return 1;
}

unsigned DialogHost::IsDlgButtonChecked(HWND dialog, int id) {
    return hasControl(dialog, id) && m_model.isChecked(dialog, id) ? 1 : 0;
}

long DialogHost::SendMessageA(HWND control, unsigned message, unsigned long wParam,
                              long lParam) {
    if (window(control) != nullptr)
        return deliver(control, message, wParam, lParam);
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return message == LB_GETCURSEL || message == LB_SETCURSEL ? LB_ERR : 0;
    const std::vector<std::string>& rows = m_model.rows(ref->dialog, ref->id);
    const int row = static_cast<int>(wParam);
    const bool inRange = row >= 0 && row < static_cast<int>(rows.size());
    switch (message) {
    case LB_GETCURSEL: {
        const int selected = m_model.selection(ref->dialog, ref->id);
        return selected < 0 ? LB_ERR : selected;
    }
    case LB_SETCURSEL:
        if (!m_model.select(ref->dialog, ref->id, row))
            return LB_ERR;
        return row < 0 ? LB_ERR : row;
    case LB_GETCOUNT:
        return static_cast<long>(rows.size());
    case LB_GETTEXTLEN:
        return inRange ? static_cast<long>(rows[row].size()) : LB_ERR;
    case LB_GETTEXT: {
        char* buffer = reinterpret_cast<char*>(lParam);
        if (!inRange || buffer == nullptr)
            return LB_ERR;
        std::memcpy(buffer, rows[row].c_str(), rows[row].size() + 1);
        return static_cast<long>(rows[row].size());
    }
    case LB_INSERTSTRING:
        return m_model.insertRow(ref->dialog, ref->id, row, orEmpty(reinterpret_cast<const char*>(lParam)));
    case LB_DELETESTRING:
        if (!m_model.deleteRow(ref->dialog, ref->id, row))
            return LB_ERR;
        return static_cast<long>(m_model.rows(ref->dialog, ref->id).size());
    default:
        return 0;
    }
}

int DialogHost::SetDlgItemTextA(HWND dialog, int id, const char* text) {
    if (!hasControl(dialog, id))
        return 0;
    m_model.setText(dialog, id, orEmpty(text));
    return 1;
}

int DialogHost::GetDlgItemTextA(HWND dialog, int id, char* buffer, int size) {
    if (buffer == nullptr || size <= 0)
        return 0;
    buffer[0] = '\0';
    if (!hasControl(dialog, id))
        return 0;
    const std::string& text = m_model.text(dialog, id);
    const std::size_t length = utf8PrefixLength(text, static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

int DialogHost::SetDlgItemInt(HWND dialog, int id, unsigned value, int isSigned) {
    if (!hasControl(dialog, id))
        return 0;
    m_model.setText(dialog, id,
                    isSigned != 0 ? std::to_string(static_cast<int>(value))
                                  : std::to_string(value));
    return 1;
}

int DialogHost::GetDlgItemInteger(HWND dialog, int id, short* value) {
    if (value == nullptr || !hasControl(dialog, id))
        return 0;
    const auto number = readEditShort(m_model.text(dialog, id));
    if (!number)
        return 0;
    *value = *number;
    return 1;
}

int DialogHost::SetDlgItemDouble(HWND dialog, int id, double value, unsigned char,
                                 int digits) {
    if (!hasControl(dialog, id))
        return 0;
    m_model.setText(dialog, id, editNumberText(value, digits));
    return 1;
}

int DialogHost::GetDlgItemDouble(HWND dialog, int id, double* value) {
    if (value == nullptr || !hasControl(dialog, id))
        return 0;
    const auto number = readEditNumber(m_model.text(dialog, id));
    if (!number)
        return 0;
    *value = *number;
    return 1;
}

void DialogHost::InitStaticListBox(HWND control, const char* const* rows) {
    const auto ref = m_model.controlOf(control);
    if (!ref)
        return;
    std::vector<std::string> texts;
    for (const char* const* row = rows; row != nullptr && *row != nullptr; ++row)
        texts.emplace_back(*row);
    m_model.setRows(ref->dialog, ref->id, std::move(texts));
}

void DialogHost::WriteVarListToCaption(HWND dialog, int id, int count, const short* vars) {
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

void DialogHost::checkChoice(const VariableDialogCall& call,
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
            const bool inFile = variable >= 1 && variable <= variables;
            const std::string which =
                (inFile ? "variable " + m_file->variable(variable).name
                        : "variable " + std::to_string(variable)) +
                " of the " + name + " list ";
            if (!inFile)
                throw std::invalid_argument(where + which + "is not a variable of the file (1 to " +
                                            std::to_string(variables) + ")");
            if (!call.choices.empty() &&
                std::find(call.choices.begin(), call.choices.end(), variable) == call.choices.end())
                throw std::invalid_argument(where + which + "is not among the choices");
            if (!seen.insert(variable).second)
                throw std::invalid_argument(where + which + "stands in it twice");
        }
    };
    checkList(choice.categorical, "first", call.min1, call.max1);
    checkList(choice.continuous, "second", call.min2, call.max2);
    const std::size_t both = choice.categorical.size() + choice.continuous.size();
    if (both > static_cast<std::size_t>(std::max(call.total, 0)))
        throw std::invalid_argument(where + std::to_string(both) +
                                    " variables in both lists; the dialog takes at most " +
                                    std::to_string(call.total));
}

int DialogHost::DoubleVarListDialog(HWND parent, unsigned short mode, const char* title,
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

    const std::optional<VariableChoice> answer = answerVariableDialog(m_calls.back());
    if (!answer)
        return 0;
    if (first == nullptr || firstCount == nullptr || second == nullptr || secondCount == nullptr)
        throw std::invalid_argument("DoubleVarListDialog: a list or count to write is null");
    std::copy(answer->categorical.begin(), answer->categorical.end(), first);
    *firstCount = static_cast<short>(answer->categorical.size());
    std::copy(answer->continuous.begin(), answer->continuous.end(), second);
    *secondCount = static_cast<short>(answer->continuous.size());
    if (m_command.first != nullptr && m_file != nullptr)
        m_variableLists[m_command] = formatVariableList(*answer, *m_file);
    return 1;
}

std::optional<VariableChoice> DialogHost::answerVariableDialog(const VariableDialogCall& call) {
    if (std::optional<VariableChoice> macro = std::exchange(m_macroChoice, std::nullopt)) {
        try {
            checkChoice(call, *macro);
        } catch (const std::invalid_argument& refusal) {
            m_refusedChoice = refusal.what();
            return std::nullopt;
        }
        return macro;
    }
    std::optional<VariableChoice> chosen = m_frontEnd.chooseVariables(call);
    if (chosen)
        checkChoice(call, *chosen);
    return chosen;
}

int DialogHost::GetInitKeyword(int section, const char* keyword, int*, int* second) {
    if (keyword == nullptr || second == nullptr)
        return 0;
    const std::optional<int> value = m_keywords.get(section, keyword);
    if (!value)
        return 0;
    *second = *value;
    return 1;
}

int DialogHost::PutInitKeyword(int section, const char* keyword, int*, int* second) {
    if (keyword == nullptr || second == nullptr)
        return 0;
    return m_keywords.put(section, keyword, *second) ? 1 : 0;
}

} // namespace wb
