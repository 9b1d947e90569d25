#include "Displays/Pictures/SpacePicture.h"

#include "Displays/Pictures/RunPicture.h"
#include "Displays/Space/SpaceCanvas.h"
#include "Model/Units/UnitTable.h"

std::vector<std::byte> EncodeSpacePicture(const SpaceScene& scene, const Viewpoint& from,
                                          const PictureSettings& settings) {
    SpaceCanvas canvas("picture");
    canvas.ResizeTo(settings.width - 1.0f, settings.height - 1.0f, settings.deviceScale);
    Camera camera;
    camera.LookFrom(from.azimuth, from.elevation);
    if (from.distance) {
        if (!scene.bodies.empty()) camera.target = scene.bodies.front().position;
        camera.distance = *from.distance;
        camera.Normalize();
    } else {
        canvas.FitCamera(scene.Places(), &camera);
    }
    const SpaceUnits units{settings.distanceUnits, POSITION_UVAL_PREF, settings.timeUnits,
                           settings.timeUval, settings.timePrefix};
    canvas.Paint(scene, camera, {}, units);
    return canvas.EncodePNG();
}
