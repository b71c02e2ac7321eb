import js from "@eslint/js";
import tseslint from "typescript-eslint";

export default tseslint.config(
    { ignores: ["dist", "package/dist", "**/*.js", "**/*.mjs"] },
    js.configs.recommended,
    ...tseslint.configs.strictTypeChecked,
    {
        languageOptions: {
            parserOptions: {
                project: [
                    "./package/tsconfig.json",
                    "./page/tsconfig.json",
                    "./tests/tsconfig.json",
                ],
                tsconfigRootDir: import.meta.dirname,
            },
        },
        rules: {
            "max-lines-per-function": [
                "error",
                { max: 60, skipBlankLines: true, skipComments: true },
            ],
            eqeqeq: "error",
            // test() of node:test, whose promise nobody needs.
            "@typescript-eslint/no-floating-promises": [
                "error",
                {
                    allowForKnownSafeCalls: [
                        { from: "package", name: "test", package: "node:test" },
                    ],
                },
            ],
            // byId<HTMLInputElement>() says what the page contains.
            "@typescript-eslint/no-unnecessary-type-parameters": "off",
            // Numbers belong into texts here.
            "@typescript-eslint/restrict-template-expressions": ["error", { allowNumber: true }],
            "@typescript-eslint/no-confusing-void-expression": [
                "error",
                { ignoreArrowShorthand: true },
            ],
            "@typescript-eslint/no-unused-vars": [
                "error",
                { varsIgnorePattern: "^_", argsIgnorePattern: "^_" },
            ],
        },
    },
);
