// The "Catégorisation" page: how it shows the current variable's method, what its radios
// enable, and when applying it rebuilds the variable's categories.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "support/PanelFixture.h"

namespace {

const std::vector<int> Radios = {9064, 9065, 9066, 9067, 9068, 9069};
// The radios, the edits and their companions.
const std::vector<int> PageControls = {9064, 9065, 9066, 9067, 9068, 9069, 9070,
                                       9071, 9072, 9073, 9074, 9075, 9077, 9078};

class CategorisationPage : public test::PanelFixture {
protected:
    void SetUp() override {
        openPanel(survey());
        choose({1}, {3});  // REGION categorical, AGE continuous (ages 25 to 65)
    }
    std::vector<int> enabledOf(const std::vector<int>& ids) const {
        std::vector<int> found;
        std::copy_if(ids.begin(), ids.end(), std::back_inserter(found),
                     [this](int id) { return enabled(id); });
        return found;
    }
    std::vector<int> checkedRadios() const {
        std::vector<int> found;
        std::copy_if(Radios.begin(), Radios.end(), std::back_inserter(found),
                     [this](int id) { return checked(id); });
        return found;
    }
    // The list's command applies the page to the current variable, then shows AGE.
    void chooseAge() { ASSERT_TRUE(dialogs.chooseRow(window, 9053, 1)); }
};

TEST_F(CategorisationPage, CategoricalVariableOnlyShowsItsMethod) {
    EXPECT_EQ(analysis->GetCurrentDown(), 1);
    EXPECT_TRUE(enabled(9079));
    EXPECT_EQ(enabledOf(PageControls), std::vector<int>{9064});
    EXPECT_EQ(checkedRadios(), std::vector<int>{9064});
    EXPECT_FALSE(dialogs.click(window, 9065));
    startup->m_Method = 1;  // as if a method had been chosen for it
    analysis->NeedsRescan = 0;
    startup->ApplyCategorisation(window);
    EXPECT_EQ(downRecord(1).Method, 0);
    EXPECT_EQ(analysis->NeedsRescan, 0);
}

TEST_F(CategorisationPage, ShowsTheMethodOfAContinuousVariable) {
    const struct {
        int method, count, atMinimum;
        double step, start;
        int radio;
        std::vector<int> enabled;
        std::vector<std::pair<int, std::string>> texts;
    } cases[] = {
        {0, 0, 0, 0, 0, 9064, {}, {}},
        {1, 7, 0, 0, 0, 9065, {9070}, {{9070, "7"}}},
        {2, 12, 0, 0, 0, 9066, {9071}, {{9071, "12"}}},
        {3, 0, 0, 2.5, -5, 9067, {9072, 9073, 9074, 9075, 9078}, {{9072, "2.5"}, {9073, "-5"}}},
        {3, 0, 1, 4, 0, 9067, {9072, 9074, 9075}, {{9072, "4"}, {9073, "0"}}},
        {4, 0, 0, 0, 0, 9068, {}, {}},
        {5, 0, 0, 0, 0, 9069, {9077}, {}},
    };
    chooseAge();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.method);
        Mutable(downRecord(3)).SetMethod(c.method, c.count, c.atMinimum, c.step, c.start);
        startup->ShowCurrentMethod(window);
        EXPECT_EQ(startup->m_Method, c.method);
        EXPECT_EQ(checkedRadios(), std::vector<int>{c.radio});
        std::vector<int> expected = Radios;
        expected.insert(expected.end(), c.enabled.begin(), c.enabled.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(enabledOf(PageControls), expected);
        for (const auto& [id, shown] : c.texts)
            EXPECT_EQ(text(id), shown) << id;
        if (c.method == 3) {
            EXPECT_EQ(checked(9075), c.atMinimum == 1);
        }
    }
}

TEST_F(CategorisationPage, StepStartsAtTheMinimumUntilUnchecked) {
    chooseAge();  // AGE's steps start at its minimum
    press(9067);
    EXPECT_EQ(enabledOf(PageControls),
              (std::vector<int>{9064, 9065, 9066, 9067, 9068, 9069, 9072, 9074, 9075}));
    EXPECT_TRUE(checked(9075));
    press(9075);
    EXPECT_EQ(startup->m_AtMinimum, 0);
    EXPECT_EQ(enabledOf({9073, 9078}), (std::vector<int>{9073, 9078}));
}

TEST_F(CategorisationPage, ApplyingRebuildsOnlyWhatChanged) {
    const struct {
        int radio;
        std::vector<std::pair<int, std::string>> typed;
        int method, count;
        double step, start;
        int atMinimum;
    } cases[] = {
        {9065, {{9070, "4"}}, 1, 4, 0, 0, 0},
        {9065, {{9070, "6"}}, 1, 6, 0, 0, 0},  // the same method with another count
        {9066, {{9071, "5"}}, 2, 5, 0, 0, 0},
        {9067, {{9072, "10"}, {9073, "20"}}, 3, 0, 10, 20, 0},
        {9067, {{9073, "30"}}, 3, 0, 10, 30, 0},  // only the start changes
        {9068, {}, 4, 0, 0, 0, 0},
        {9064, {}, 0, 0, 0, 0, 0},
    };
    chooseAge();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.radio);
        if (!checked(c.radio))
            press(c.radio);
        if (c.method == 3 && checked(9075))
            press(9075);
        for (const auto& [id, typed] : c.typed)
            ASSERT_TRUE(dialogs.typeText(window, id, typed));
        analysis->NeedsRescan = 0;
        chooseAge();
        const Drill& age = downRecord(3);
        EXPECT_EQ(age.Method, c.method);
        EXPECT_EQ(age.ExactN, c.count);
        EXPECT_EQ(age.Step, c.step);
        EXPECT_EQ(age.Start, c.start);
        EXPECT_EQ(age.AtMinimum, c.atMinimum);
        EXPECT_EQ(analysis->NeedsRescan, 1);
        if (c.method == 1) {
            EXPECT_EQ(age.Categories.size(), std::size_t(c.count));
        }

        // The page now shows the record: applying it again changes nothing.
        Mutable(age).Categories.emplace(0, 1.0, 1e9, "kept", 1e9);
        const std::size_t categories = age.Categories.size();
        analysis->NeedsRescan = 0;
        chooseAge();
        EXPECT_EQ(age.Categories.size(), categories);
        EXPECT_EQ(analysis->NeedsRescan, 0);
    }
}

TEST_F(CategorisationPage, NoVariableLeftDisablesThePage) {
    choose({1}, {});
    drillDown(0);
    EXPECT_FALSE(enabled(9079));
    EXPECT_TRUE(enabledOf(PageControls).empty());
    EXPECT_TRUE(checkedRadios().empty());
}

} // namespace
