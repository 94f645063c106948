#pragma once

#include "datalib/TORVFile.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

/**
 * A node of the tree that a directory of product files makes: a top, sites, products, configurations, leaves. A node
 * knows its children by name, in ascending order of their names.
 *
 * Invariants: a name is never null; a node without children, other than the top, doesn't stay in the tree; a node that
 * has left the tree has no parent.
 *
 * Ownership: parents share their children with whoever asked for them; the pointer to the parent is "not mine".
 *
 * Thread: caller locks. A tree that several threads use is asked through its `TORVDirTop`; what stands here is for the
 * tree itself and for use by one thread alone. `getName`, and all of a leaf but `getParent` and `printSelf`, never
 * change and are for any thread.
 */
class TORVDirectory
{
public:
    using Ptr = boost::shared_ptr<TORVDirectory>;
    using Children = QMap<QString, Ptr>;

    enum Types : int
    {
        TYPE_TOP = 0,
        TYPE_SITE = 1,
        TYPE_PRODUCT = 2,
        TYPE_CONFIGURATION = 3,
        TYPE_LEAF = 4
    };

    virtual ~TORVDirectory();

    /// The child of that name, made if there is none; one that is there stays as it is, whatever the file. Below a
    /// leaf there is nothing: it takes the name and a null child.
    virtual Ptr addChild(const QString& name, const TORVFile::CPtr& file);

    /// A node that this leaves empty goes too, and so on up to the top: hold a pointer to a node that is still needed.
    virtual void removeChild(const QString& name);

    virtual const Children* getChildren() const;
    virtual QStringList getChildrenNames() const;
    virtual TORVDirectory* getParent() const;
    virtual QString getName() const;
    virtual Ptr findChildByName(const QString& name) const; ///< null if there is none
    virtual bool isValid() const = 0;

    /// To standard output.
    virtual void printSelf() const;

    TORVDirectory(const TORVDirectory&) = delete;
    TORVDirectory& operator=(const TORVDirectory&) = delete;

    Types getType() const { return _type; }

protected:
    TORVDirectory(const QString& name, TORVDirectory* parent, Types type);

    /// The name of the node that many levels up, empty above the top.
    QString ancestorName(int levels) const;

    /// Lets go of all children at once; the caller tells nobody which leaves went.
    Children takeChildren();

    /// Called on each node on the way up from a leaf that came or went.
    virtual void leafAdded(const Ptr& leaf);
    virtual void leafRemoved(const Ptr& leaf);

private:
    Ptr makeChild(const QString& name, const TORVFile::CPtr& file);
    void forget(const Ptr& child);

    Children _children;
    QString _name;
    TORVDirectory* _parent;
    Types _type;
};

/**
 * A radar site.
 *
 * Thread: as `TORVDirectory`.
 */
class TORVDirSite : public TORVDirectory
{
public:
    TORVDirSite(const QString& name, TORVDirectory* parent);
    bool isValid() const override;
};

/**
 * A kind of product of one site.
 *
 * Thread: as `TORVDirectory`.
 */
class TORVDirProduct : public TORVDirectory
{
public:
    TORVDirProduct(const QString& name, TORVDirectory* parent);
    bool isValid() const override;
    virtual QString getSite() const;
};

/**
 * A quantity of one product; its name is empty where the file's data type is an unknown one.
 *
 * Thread: as `TORVDirectory`.
 */
class TORVDirConfiguration : public TORVDirectory
{
public:
    TORVDirConfiguration(const QString& name, TORVDirectory* parent);
    bool isValid() const override;
    virtual QString getSite() const;
    virtual QString getProduct() const;
};

/**
 * A file and its place in the tree. It keeps the names of its place, so it goes on telling them when the tree has
 * dropped it.
 *
 * Thread: any thread, but for `getParent` and `printSelf`.
 */
class TORVFileLeaf : public TORVDirectory
{
public:
    using Ptr = boost::shared_ptr<TORVFileLeaf>;
    using CPtr = boost::shared_ptr<const TORVFileLeaf>;

    TORVFileLeaf(const QString& name, TORVDirectory* parent, const TORVFile::CPtr& file);

    /// Whether there is a file, and a valid one.
    bool isValid() const override;
    void printSelf() const override;

    virtual TORVFile::CPtr getFile() const;
    virtual QString getSite() const;
    virtual QString getProduct() const;
    virtual QString getConfiguration() const;
    virtual QString getTime() const;
    virtual QString getPath() const; ///< absolute

    /// The file's data time in milliseconds since 1970 UTC, for comparisons of many; 0 without a file.
    qint64 dataTime_ms() const { return _dataTime_ms; }

private:
    TORVFile::CPtr _file;
    QString _site;
    QString _product;
    QString _configuration;
    QString _time;
    qint64 _dataTime_ms;
};
