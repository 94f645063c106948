#pragma once

#include "utils/TORVLog.h"
#include "visualization/TORVVisualElement.h"

#include <QString>

#include <boost/make_shared.hpp>

/**
 * What all elements do alike when they are updated: they take parameters of their own class, see whether these differ
 * from the last ones, and are built anew only then.
 *
 * | before              | parameters of the update   | what happens                                      | after  |
 * |---------------------|----------------------------|---------------------------------------------------|--------|
 * | any                 | none, or another class     | `invalidate`                                      | empty  |
 * | empty               | there                      | `rebuild`                                         | filled |
 * | filled              | there, changed             | `rebuild`                                         | filled |
 * | filled              | there, not changed         | nothing                                           | filled |
 * | any                 | there, aborted meanwhile   | `invalidate`: what is half built is built again   | empty  |
 *
 * `complete` follows every update that doesn't leave the element empty.
 */
template <class Parameters>
class TORVLayerElement : public TORVVisualElement
{
public:
    vtkSmartPointer<vtkProp> getProp() override { return _prop; }

    void update(boost::shared_ptr<const TORVLayerParameters> params, bool visible, const std::atomic<bool>& abort) final
    {
        const auto wanted = boost::dynamic_pointer_cast<const Parameters>(params);
        if (!wanted) {
            log("layer parameters not set.");
            invalidate();
            return;
        }
        if (take(wanted)) {
            rebuild(abort);
        }
        if (!abort) {
            complete(visible, abort);
        }
        if (abort) {
            log("ABORTED!");
            invalidate();
        }
    }

    void invalidate() override
    {
        _params.reset();
        _prop = nullptr;
    }

protected:
    /// @param name  of the class, for the log
    TORVLayerElement(TORVVisualGroup* parent, int id, const char* name,
                     const char* creating = "Creating new  visualization.")
        : TORVVisualElement(parent, id), _name(name), _creating(creating)
    {
    }

    virtual void rebuild(const std::atomic<bool>& abort) = 0;

    /// What is held back until the layer is seen.
    virtual void complete(bool visible, const std::atomic<bool>& abort)
    {
        Q_UNUSED(visible)
        Q_UNUSED(abort)
    }

    void log(const char* words) const
    {
        TORVLog::Instance()->logDebug(QLatin1String(_name) + QLatin1String("::update(): ") + QLatin1String(words));
    }

    boost::shared_ptr<const Parameters> _params;
    vtkSmartPointer<vtkProp> _prop;

private:
    // Whether they call for a rebuild.
    bool take(const boost::shared_ptr<const Parameters>& wanted)
    {
        if (_params && !_params->hasChanged(*wanted)) {
            log("No need to update.");
            return false;
        }
        log(_params ? "Re-creating changed visualization.." : _creating);
        _params = wanted;
        return true;
    }

    const char* _name;
    const char* _creating;
};
