#include "PictureChoices.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include <framework/display/PopupProgress.h>
#include <framework/display/SelectionField.h>
#include <framework/services/LocalMgmtIfc.h>

#include "EventContext.h"
#include "PhonebookLog.h"
#include "PopupMaker.h"
#include "ShownProgress.h"

using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/PictureChoices";
constexpr int nPROGRESS_KIND = 1;

// The name of a clip as the user knows it.
TranslationInfo clipLabel(const std::string& path)
{
    return TranslationInfo::plain(std::filesystem::path(path).stem().string());
}

} // namespace

std::unique_ptr<DisplayAPI::Displayable> PictureChoices::populateImages(EventContext* pContext)
{
    PB_TRACE("PictureChoices::populateImages()");
    m_images.clear();
    m_ownPicture.reset();
    addImage("", TranslationInfo("no.picture", pContext->m_pTranslator));
    if (!pContext->m_pLocalMgmt)
        return nullptr;
    auto pLoading = PopupMaker::progress(nPROGRESS_KIND);
    pLoading->setText(TranslationInfo("loading.picture.clips", pContext->m_pTranslator));
    const ShownProgress progress(pContext, *pLoading);
    for (const auto& path : pContext->m_pLocalMgmt->getPictureClips())
        addImage(path, clipLabel(path));
    return pLoading;
}

void PictureChoices::offer(EventContext* pContext, DisplayAPI::SelectionField& field,
                           const std::string& picture)
{
    PB_TRACE("PictureChoices::offer()");
    auto* pLocalMgmt = pContext->m_pLocalMgmt;
    const auto isPicture = [&](const PhonebookImage& image) {
        const auto& path = image.getSfCommand()->getImagePath();
        return path.empty() ? picture.empty() : pLocalMgmt->pictureNameFromPath(path) == picture;
    };
    auto shown = static_cast<std::size_t>(std::ranges::find_if(m_images, isPicture) - m_images.begin());
    if (shown == m_images.size()) {
        addImage(pLocalMgmt ? pLocalMgmt->picturePathFromName(picture) : "", clipLabel(picture));
        m_ownPicture = picture;
    }
    field.clear(m_images[shown].getSfCommand());
    for (const auto& image : m_images)
        field.append(image.getSfCommand());
}

std::string PictureChoices::selected(EventContext* pContext, const DisplayAPI::SelectionField& field) const
{
    PB_TRACE("PictureChoices::selected()");
    const auto position = static_cast<std::size_t>(field.getSelectedIndex());
    const auto& path = m_images.at(position).getSfCommand()->getImagePath();
    if (m_ownPicture && position + 1 == m_images.size())
        return *m_ownPicture;
    return path.empty() ? "" : pContext->m_pLocalMgmt->pictureNameFromPath(path);
}

void PictureChoices::addImage(const std::string& path, TranslationInfo label)
{
    PB_TRACE("PictureChoices::addImage()");
    auto pCommand = std::make_unique<DisplayAPI::MenuCommand>(std::move(label));
    pCommand->setImagePath(path);
    auto& image = m_images.emplace_back();
    image.setDisplayImage(std::make_unique<DisplayAPI::Image>(path));
    image.setSfCommand(std::move(pCommand));
}
