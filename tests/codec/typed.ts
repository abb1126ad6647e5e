// What a compiler accepts and refuses of the generated module, which is beside it.
import { CCmdHomePackRequest, CCmdServerEcho, decode, Frame, frameOf, make } from "./codec";

const echo: CCmdServerEcho = make(CCmdServerEcho, { m_Data: 42 });
const frame: Frame = frameOf(echo, 32);
const again: number = decode(CCmdServerEcho, frame.payload).m_Data;
const bytes: Uint8Array = new CCmdHomePackRequest().m_PackData;
// @ts-expect-error a field of another type
echo.m_Data = "text";
// @ts-expect-error no such field
make(CCmdServerEcho, { m_Dta: 42 });
export { again, bytes };
