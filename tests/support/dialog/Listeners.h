#pragma once

// Who is told of what a person does, and writes it down.

#include <formweave/formweave.h>

#include <functional>
#include <string>
#include <vector>

class CheckBoxListener : public KsDialogCheckBoxAuditor {
public:
    void dialogCheckBox(KsDialogCheckBox* box) override
    {
        states.push_back(box->state);
        if (then) then(box);
    }
    std::vector<bool> states;
    std::function<void(KsDialogCheckBox*)> then;
};

class ChoiceListener : public KsDialogChoiceAuditor {
public:
    void dialogChoice(KsDialogChoice* choice) override
    {
        told.push_back(choice->selectedItem);
        if (then) then(choice);
    }
    std::vector<int> told;
    std::function<void(KsDialogChoice*)> then;
};

/// At a container: the check boxes in it, by their `auditorID` and what they are now.
class BoxesListener : public KsDialogAuditor {
public:
    void dialogCheckBox(KsDialogCheckBox* box) override
    {
        told.push_back(box->auditorID.getValue().toUtf8() + (box->state ? "+" : "-"));
        if (then) then(box);
    }
    std::vector<std::string> told;
    std::function<void(KsDialogCheckBox*)> then;
};
