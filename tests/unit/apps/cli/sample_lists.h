#pragma once

#include "platform/bxt/compare_outcome.h"

/// Lists of a small comparison with one of everything.
struct SampleLists {
    SampleLists() {
        lists.fileInformation = {{L"File Path", L"Volume"},
                                 {L"/a", L"1.00 mm\u00b3"},
                                 {L"File Path", L"Volume"},
                                 {L"/b", L"1.00 mm\u00b3"},
                                 {3, 0},
                                 {3, 0}};
        lists.billOfMaterials = {
            {L"Bolt", L"Nut", L"Pin"}, {L"8", L"1", L"2"}, {L"Bolt", L"Nut", L"Washer"},
            {L"10", L"1", L"3"},       {0, 0, 1},          {0, 0, 2}};
        lists.attributes = {{L"Author", L"Header File Name", L"Header Time Stamp"},
                            {L"Ann", L"a.stp", L"today"},
                            {L"Author", L"Header File Name", L"Header Time Stamp"},
                            {L"Bob", L"b.stp", L"tomorrow"},
                            {3, 3, 3},
                            {3, 3, 3}};
        lists.pmi = {{L"Flatness"}, {L"0.1"}, {L"Flatness"}, {L"0.1"}, {0}, {0}};
        lists.referenceParts = {part(L"Bolt", {{L"Mass", L"2", 3}, {L"Finish", L"zinc", 0}}, true),
                                part(L"Pin", {{L"Mass", L"1", 1}}, true),
                                part(L"Nut", {{L"Mass", L"1", 0}}, false)};
        lists.compareParts = {part(L"Bolt", {{L"Mass", L"3", 3}, {L"Finish", L"zinc", 0}}, true),
                              part(L"Nut", {{L"Mass", L"1", 0}}, false)};
        lists.partRows = {{0, 0}, {2, 1}, {1, -1}};
        lists.referenceVolume = 1.0;
        lists.referenceUnit = L"mm";
        lists.order = {0, 1, 4, 2, 3};
    }

    static bxtsg::OutcomePart part(const std::wstring& name,
                                   std::vector<bxtsg::OutcomeAttribute> attributes,
                                   bool different) {
        bxtsg::OutcomePart made;
        made.name = name;
        made.attributes = std::move(attributes);
        made.isDifferent = different;
        return made;
    }

    bxtsg::SectionsOutcome lists;
};
