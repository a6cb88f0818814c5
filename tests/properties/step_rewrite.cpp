#include <IFSelect_ReturnStatus.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <Standard_Failure.hxx>
#include <TDocStd_Document.hxx>
#include <XCAFApp_Application.hxx>
#include <iostream>

namespace {

Handle(TDocStd_Document) newDocument() {
    Handle(TDocStd_Document) document;
    XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
    return document;
}

int rewrite(const char* from, const char* to) {
    Handle(TDocStd_Document) document = newDocument();
    STEPCAFControl_Reader reader;
    if (reader.ReadFile(from) != IFSelect_RetDone || !reader.Transfer(document)) return 1;
    STEPCAFControl_Writer writer;
    if (!writer.Transfer(document, STEPControl_AsIs)) return 2;
    return writer.Write(to) == IFSelect_RetDone ? 0 : 3;
}

}  // namespace

/// step_rewrite IN OUT: reads a STEP file and writes it again, as another system would that
/// imports and exports it.
int main(int argc, char** argv) {
    if (argc != 3) return 64;
    try {
        STEPCAFControl_Controller::Init();
        return rewrite(argv[1], argv[2]);
    } catch (const Standard_Failure& failure) {
        std::cerr << failure.GetMessageString() << "\n";
        return 4;
    }
}
