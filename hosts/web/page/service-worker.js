// Keeps the page for times without a network. A new version waits until no tab shows the old one,
// and then takes over with all of its files at once: pieces of two versions never meet.
const CACHE = "voxam-__VERSION__";
const FILES = __FILES__;

self.addEventListener("install", (event) => {
    // From the server: the browser's own cache may still contain files of the version before.
    const requests = FILES.map((file) => new Request(file, { cache: "reload" }));
    event.waitUntil(caches.open(CACHE).then((cache) => cache.addAll(requests)));
});

self.addEventListener("activate", (event) => {
    const takeOver = async () => {
        for (const name of await caches.keys()) if (name !== CACHE) await caches.delete(name);
        await self.clients.claim(); // at the first visit the page came before its worker
    };
    event.waitUntil(takeOver());
});

self.addEventListener("fetch", (event) => {
    if (event.request.method !== "GET") return;
    const answer = async () => {
        const cache = await caches.open(CACHE);
        const kept = await cache.match(event.request, { ignoreSearch: true });
        return kept ?? fetch(event.request);
    };
    event.respondWith(answer());
});
