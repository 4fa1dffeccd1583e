#include "platform/qt/QtHttpsClient.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace quillmeter {
namespace {

int milliseconds(double seconds) {
  return static_cast<int>(std::clamp(std::round(seconds * 1000), 0.0, double{std::numeric_limits<int>::max()}));
}

std::optional<QUrl> acceptedUrl(const std::string& text) {
  QUrl url(QString::fromStdString(text), QUrl::StrictMode);
  if (!url.isValid() || url.scheme() != QLatin1String("https") || url.host().isEmpty()) return std::nullopt;
  return url;
}

QNetworkRequest networkRequest(const HttpsRequest& request, const QUrl& url,
                               const std::vector<std::string>& additionalAuthorities) {
  QNetworkRequest result(url);
  // A compressed body would grow after it was measured.
  result.setRawHeader("Accept-Encoding", "identity");
  for (const auto& [name, value] : request.headers) {
    result.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
  }
  result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
  result.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  result.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
  QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
  for (const std::string& authority : additionalAuthorities) {
    tls.addCaCertificates(QSslCertificate::fromData(QByteArray::fromStdString(authority), QSsl::Pem));
  }
  result.setSslConfiguration(tls);
  return result;
}

// An error of the exchange itself; what a server answers, whatever it is, is none.
bool isTransportError(QNetworkReply::NetworkError error) {
  return error != QNetworkReply::NoError &&
         !(error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError) &&
         !(error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError);
}

class QtHttpsTransfer final : public HttpsTransfer {
 public:
  QtHttpsTransfer(const HttpsRequest& request, const std::vector<std::string>& additionalAuthorities,
                  HttpsClient::Completion completion)
      : maximumBodyBytes_(request.maximumBodyBytes), completion_(std::move(completion)) {
    const auto url = acceptedUrl(request.url);
    if (!url) {
      QMetaObject::invokeMethod(
          &context_, [this] { end(tl::unexpected(HttpsFailure::refusedUrl)); }, Qt::QueuedConnection);
      return;
    }
    // Deleted by the event loop, since it may be at work when this ends.
    manager_ = new QNetworkAccessManager;
    reply_ = manager_->get(networkRequest(request, *url, additionalAuthorities));
    reply_->setReadBufferSize(static_cast<qint64>(maximumBodyBytes_) + 1);
    watchTime(request);
    QObject::connect(reply_, &QNetworkReply::metaDataChanged, &context_, [this] { noteSign(); });
    QObject::connect(reply_, &QNetworkReply::encrypted, &context_, [this] { noteSign(); });
    QObject::connect(reply_, &QNetworkReply::readyRead, &context_, [this] {
      noteSign();
      takeBytes();
    });
    QObject::connect(reply_, &QNetworkReply::finished, &context_, [this] { finish(); });
  }
  ~QtHttpsTransfer() override { cancel(); }
  QtHttpsTransfer(const QtHttpsTransfer&) = delete;
  QtHttpsTransfer& operator=(const QtHttpsTransfer&) = delete;

 private:
  void watchTime(const HttpsRequest& request) {
    const auto giveUp = [this] { end(tl::unexpected(HttpsFailure::timedOut)); };
    for (QTimer* timer : {&silence_, &whole_}) {
      timer->setSingleShot(true);
      QObject::connect(timer, &QTimer::timeout, &context_, giveUp);
    }
    silence_.start(milliseconds(request.requestTimeoutSeconds));
    whole_.start(milliseconds(request.resourceTimeoutSeconds));
  }

  void noteSign() { silence_.start(); }

  // False when that ended the transfer.
  bool takeBytes() {
    const QByteArray bytes = reply_->readAll();
    body_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (body_.size() <= maximumBodyBytes_) return true;
    end(tl::unexpected(HttpsFailure::tooLarge));
    return false;
  }

  void finish() {
    const QVariant status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (isTransportError(reply_->error()) || !status.isValid()) return end(tl::unexpected(HttpsFailure::transport));
    if (takeBytes()) end(HttpsResponse{status.toInt(), std::move(body_)});
  }

  // The completion may end this transfer.
  void end(tl::expected<HttpsResponse, HttpsFailure> result) {
    cancel();
    const auto completion = std::exchange(completion_, nullptr);
    if (completion) completion(result);
  }

  void cancel() {
    silence_.stop();
    whole_.stop();
    if (reply_ == nullptr) return;
    QNetworkReply* const reply = std::exchange(reply_, nullptr);
    QObject::disconnect(reply, nullptr, &context_, nullptr);
    reply->abort();
    reply->deleteLater();
    std::exchange(manager_, nullptr)->deleteLater();
  }

  const std::size_t maximumBodyBytes_;
  HttpsClient::Completion completion_;
  std::string body_;
  QNetworkAccessManager* manager_ = nullptr;
  QNetworkReply* reply_ = nullptr;
  QTimer silence_;
  QTimer whole_;
  QObject context_;  // what ends the calls of the others when this is destroyed
};

}  // namespace

std::unique_ptr<HttpsTransfer> QtHttpsClient::get(const HttpsRequest& request, Completion completion) {
  return std::make_unique<QtHttpsTransfer>(request, additionalAuthorities_, std::move(completion));
}

}  // namespace quillmeter
