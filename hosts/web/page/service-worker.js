// Keeps the page for times without a network. A new version takes over at the next visit, with all
// of its files at once: pieces of two versions never meet.
const CACHE = "voxam-__VERSION__";
const FILES = __FILES__;

self.addEventListener("install", (event) => {
    event.waitUntil(
        caches
            .open(CACHE)
            .then((cache) => cache.addAll(FILES))
            .then(() => self.skipWaiting()),
    );
});

self.addEventListener("activate", (event) => {
    const removeOld = async () => {
        for (const name of await caches.keys()) if (name !== CACHE) await caches.delete(name);
        await self.clients.claim();
    };
    event.waitUntil(removeOld());
});

self.addEventListener("fetch", (event) => {
    if (event.request.method !== "GET") return;
    event.respondWith(
        caches
            .match(event.request, { ignoreSearch: true })
            .then((kept) => kept ?? fetch(event.request)),
    );
});
