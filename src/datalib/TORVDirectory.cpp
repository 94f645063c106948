#include "datalib/TORVDirectory.h"

#include <boost/make_shared.hpp>

#include <iostream>
#include <utility>

namespace
{

QString notNull(const QString& name)
{
    return name.isNull() ? QStringLiteral("") : name;
}

} // namespace

TORVDirectory::TORVDirectory(const QString& name, TORVDirectory* parent, Types type)
    : _name(notNull(name)), _parent(parent), _type(type)
{
}

TORVDirectory::~TORVDirectory()
{
    takeChildren();
}

TORVDirectory::Ptr TORVDirectory::makeChild(const QString& name, const TORVFile::CPtr& file)
{
    switch (_type) {
    case TYPE_TOP:
        return boost::make_shared<TORVDirSite>(name, this);
    case TYPE_SITE:
        return boost::make_shared<TORVDirProduct>(name, this);
    case TYPE_PRODUCT:
        return boost::make_shared<TORVDirConfiguration>(name, this);
    case TYPE_CONFIGURATION:
        return boost::make_shared<TORVFileLeaf>(name, this, file);
    case TYPE_LEAF:
        break;
    }
    return {};
}

TORVDirectory::Ptr TORVDirectory::addChild(const QString& name, const TORVFile::CPtr& file)
{
    const Children& children = _children;
    const auto place = children.lowerBound(name);
    if (place != children.cend() && place.key() == name) {
        return place.value();
    }
    const Ptr child = makeChild(name, file);
    _children.insert(place, child ? child->_name : notNull(name), child);
    if (_type == TYPE_CONFIGURATION) {
        leafAdded(child);
    }
    return child;
}

void TORVDirectory::removeChild(const QString& name)
{
    const Ptr child = _children.take(name);
    if (child) {
        forget(child);
        child->_parent = nullptr;
    }
    if (_children.isEmpty() && _type != TYPE_TOP && _parent != nullptr) {
        const QString ownName = _name; // this node may end with the call
        _parent->removeChild(ownName);
    }
}

void TORVDirectory::forget(const Ptr& child)
{
    if (child->_type == TYPE_LEAF) {
        leafRemoved(child);
        return;
    }
    for (const Ptr& grandchild : std::as_const(child->_children)) {
        forget(grandchild);
    }
}

TORVDirectory::Children TORVDirectory::takeChildren()
{
    for (const Ptr& child : std::as_const(_children)) {
        if (child) {
            child->_parent = nullptr;
        }
    }
    return std::exchange(_children, Children());
}

void TORVDirectory::leafAdded(const Ptr& leaf)
{
    if (_parent != nullptr) {
        _parent->leafAdded(leaf);
    }
}

void TORVDirectory::leafRemoved(const Ptr& leaf)
{
    if (_parent != nullptr) {
        _parent->leafRemoved(leaf);
    }
}

const TORVDirectory::Children* TORVDirectory::getChildren() const
{
    return &_children;
}

QStringList TORVDirectory::getChildrenNames() const
{
    return _children.keys();
}

TORVDirectory* TORVDirectory::getParent() const
{
    return _parent;
}

QString TORVDirectory::getName() const
{
    return _name;
}

TORVDirectory::Ptr TORVDirectory::findChildByName(const QString& name) const
{
    return _children.value(name);
}

QString TORVDirectory::ancestorName(int levels) const
{
    const TORVDirectory* node = this;
    for (int level = 0; node != nullptr && level < levels; ++level) {
        node = node->_parent;
    }
    return node != nullptr ? node->_name : QStringLiteral("");
}

void TORVDirectory::printSelf() const
{
    std::cout << "\nname: " << _name.toStdString() << "\nparent: ";
    for (const TORVDirectory* node = _parent; node != nullptr; node = node->_parent) {
        if (!node->_name.isEmpty()) {
            std::cout << '.' << node->_name.toStdString();
        }
    }
    std::cout << std::endl;
}

TORVDirSite::TORVDirSite(const QString& name, TORVDirectory* parent) : TORVDirectory(name, parent, TYPE_SITE) {}

bool TORVDirSite::isValid() const
{
    return true;
}

TORVDirProduct::TORVDirProduct(const QString& name, TORVDirectory* parent) : TORVDirectory(name, parent, TYPE_PRODUCT)
{
}

bool TORVDirProduct::isValid() const
{
    return true;
}

QString TORVDirProduct::getSite() const
{
    return ancestorName(1);
}

TORVDirConfiguration::TORVDirConfiguration(const QString& name, TORVDirectory* parent)
    : TORVDirectory(name, parent, TYPE_CONFIGURATION)
{
}

bool TORVDirConfiguration::isValid() const
{
    return true;
}

QString TORVDirConfiguration::getSite() const
{
    return ancestorName(2);
}

QString TORVDirConfiguration::getProduct() const
{
    return ancestorName(1);
}

TORVFileLeaf::TORVFileLeaf(const QString& name, TORVDirectory* parent, const TORVFile::CPtr& file)
    : TORVDirectory(name, parent, TYPE_LEAF), _file(file), _site(ancestorName(3)), _product(ancestorName(2)),
      _configuration(ancestorName(1)), _time(ancestorName(0)),
      _dataTime_ms(file ? file->getDataTime().toMSecsSinceEpoch() : 0)
{
}

bool TORVFileLeaf::isValid() const
{
    return _file && _file->isValid();
}

TORVFile::CPtr TORVFileLeaf::getFile() const
{
    return _file;
}

QString TORVFileLeaf::getSite() const
{
    return _site;
}

QString TORVFileLeaf::getProduct() const
{
    return _product;
}

QString TORVFileLeaf::getConfiguration() const
{
    return _configuration;
}

QString TORVFileLeaf::getTime() const
{
    return _time;
}

QString TORVFileLeaf::getPath() const
{
    return _file ? _file->getPath() : QString();
}

void TORVFileLeaf::printSelf() const
{
    TORVDirectory::printSelf();
    if (!isValid()) {
        return;
    }
    std::cout << "path: " << getPath().toStdString() << "\nwidth, height, depth: " << _file->getXPoints() << " x "
              << _file->getYPoints() << " x " << _file->getZPoints() << "\nscaling: " << _file->getXScale() << " x "
              << _file->getYScale() << " x " << _file->getZScale() << "\ndata item size: " << _file->getItemSize()
              << std::endl;
}
