#include "visualization/TORVVisualElement.h"

TORVVisualElement::TORVVisualElement(TORVVisualGroup* parent, int id) : _parentGroup(parent), _id(id) {}

TORVVisualElement::~TORVVisualElement() = default;

vtkSmartPointer<vtkProp> TORVVisualElement::getProp()
{
    return {};
}

void TORVVisualElement::invalidate() {}
