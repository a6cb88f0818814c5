#include "samples/step_properties.h"

#include <cstdint>
#include <cstdio>

#include <StepBasic_MeasureValueMember.hxx>
#include <StepBasic_SiUnitAndLengthUnit.hxx>
#include <StepBasic_Unit.hxx>
#include <StepRepr_CharacterizedDefinition.hxx>
#include <StepRepr_DescriptiveRepresentationItem.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_MeasureRepresentationItem.hxx>
#include <StepRepr_PropertyDefinition.hxx>
#include <StepRepr_PropertyDefinitionRepresentation.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepRepr_RepresentedDefinition.hxx>
#include <TCollection_HAsciiString.hxx>

namespace samples {
namespace {

Handle(TCollection_HAsciiString) text(const std::string& value) {
    return new TCollection_HAsciiString(value.c_str());
}

void addProperty(const Handle(StepData_StepModel) & model,
                 const Handle(StepBasic_ProductDefinition) & product, const std::string& key,
                 const Handle(StepRepr_RepresentationItem) & item) {
    StepRepr_CharacterizedDefinition subject;
    subject.SetValue(product);
    Handle(StepRepr_PropertyDefinition) definition = new StepRepr_PropertyDefinition;
    definition->Init(text("user defined attribute"), Standard_True, text(key), subject);

    Handle(StepRepr_HArray1OfRepresentationItem) items =
        new StepRepr_HArray1OfRepresentationItem(1, 1);
    items->SetValue(1, item);
    Handle(StepRepr_RepresentationContext) context = new StepRepr_RepresentationContext;
    context->Init(text(""), text(""));
    Handle(StepRepr_Representation) representation = new StepRepr_Representation;
    representation->Init(text(key), items, context);

    StepRepr_RepresentedDefinition represented;
    represented.SetValue(definition);
    Handle(StepRepr_PropertyDefinitionRepresentation) link =
        new StepRepr_PropertyDefinitionRepresentation;
    link->Init(represented, representation);
    model->AddWithRefs(link);
}

void appendHex(std::string& out, std::uint32_t value, int digits) {
    char buffer[9];
    std::snprintf(buffer, sizeof buffer, "%0*X", digits, static_cast<unsigned>(value));
    out += buffer;
}

/// Code point at `at`, which moves past it. The input is our own, hence valid.
std::uint32_t decode(std::string_view utf8, std::size_t& at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
    const unsigned char lead = byte(at++);
    int more = 1;
    std::uint32_t code = lead & 0x1FU;
    if (lead >= 0xF0) {
        more = 3;
        code = lead & 0x07U;
    } else if (lead >= 0xE0) {
        more = 2;
        code = lead & 0x0FU;
    }
    for (; more > 0 && at < utf8.size(); --more) code = (code << 6) | (byte(at++) & 0x3FU);
    return code;
}

}  // namespace

void addTextProperty(const Handle(StepData_StepModel) & model,
                     const Handle(StepBasic_ProductDefinition) & product, const std::string& key,
                     const std::string& value) {
    Handle(StepRepr_DescriptiveRepresentationItem) item =
        new StepRepr_DescriptiveRepresentationItem;
    item->Init(text(key), text(value));
    addProperty(model, product, key, item);
}

void addLengthProperty(const Handle(StepData_StepModel) & model,
                       const Handle(StepBasic_ProductDefinition) & product, const std::string& key,
                       double valueMm) {
    Handle(StepBasic_MeasureValueMember) measure = new StepBasic_MeasureValueMember;
    measure->SetName("POSITIVE_LENGTH_MEASURE");
    measure->SetReal(valueMm);
    Handle(StepBasic_SiUnitAndLengthUnit) millimetre = new StepBasic_SiUnitAndLengthUnit;
    millimetre->Init(Standard_True, StepBasic_spMilli, StepBasic_sunMetre);
    StepBasic_Unit unit;
    unit.SetValue(millimetre);
    Handle(StepRepr_MeasureRepresentationItem) item = new StepRepr_MeasureRepresentationItem;
    item->Init(text(key), measure, unit);
    addProperty(model, product, key, item);
}

std::string withEncodedText(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    std::size_t at = 0;
    const auto isAscii = [&] { return static_cast<unsigned char>(utf8[at]) < 0x80; };
    while (at < utf8.size()) {
        if (isAscii()) {
            out += utf8[at++];
            continue;
        }
        std::size_t next = at;
        const bool wide = decode(utf8, next) > 0xFFFF;
        out += wide ? "\\X4\\" : "\\X2\\";
        while (at < utf8.size() && !isAscii()) {
            next = at;
            const std::uint32_t code = decode(utf8, next);
            if ((code > 0xFFFF) != wide) break;
            appendHex(out, code, wide ? 8 : 4);
            at = next;
        }
        out += "\\X0\\";
    }
    return out;
}

}  // namespace samples
